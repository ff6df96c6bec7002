#pragma once

// What concerns vector icons: the two switches of the process, and the styles with which an icon is registered.

#include "common/gl/gti/export/block_descriptor.hpp"
#include "platform/foundation/ustring.hpp"

#include <boost/optional.hpp>

#include <filesystem>
#include <map>

namespace gl::gti {

/// Whether vector icons are handed to the host's icon service. False from the start; without it they draw as text
/// icons.
bool& icon_styling_switch();

/// Whether vector icons take line and colour from their ports, as "verdane.internal.enableIconStyling" says. Asked once
/// in the process, which ends if the call fails.
bool icon_styling_preference();

/// Exactly the extension ".svg"; false for none.
bool is_svg(const boost::optional<std::filesystem::path>& file);

ustring path_text(const std::filesystem::path& file);

using IconStyles = std::map<ustring, ustring>;

/// "On" or "Off", as the styles "Frame" and "Rotate" take it.
ustring icon_style_flag(bool flag);

IconStyles icon_styles(const BlockDescriptor& descriptor, bool rotate);

}  // namespace gl::gti
