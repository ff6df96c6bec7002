#pragma once

#include "platform/foundation/ustring.hpp"

#include <string>

namespace embedded::block_diagram {

/// Sets a setting of the vector graphics library, which `kmdvg_setting` reads.
void setIconSetting(const std::string& name, const ustring& value);
/// Forgets all registered icons, and takes the settings back to where they began.
void forgetIcons();

}  // namespace embedded::block_diagram
