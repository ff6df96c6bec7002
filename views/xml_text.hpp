// Texts inside of XML.
#pragma once

#include <string>
#include <string_view>

namespace kinemo::views {

/// UTF-8 text as it stands in an element or between quotation marks. What XML 1.0 has no way to write (most control
/// characters, surrogates, U+FFFE and U+FFFF) becomes U+FFFD.
std::string xml_text(std::string_view text);

}  // namespace kinemo::views
