#pragma once

// Conversions between the three text forms of the system: UTF-16 (`ustring`), UTF-8, and the local encoding of the
// process. An implementation provides all of them. Malformed input never fails: a bad sequence becomes U+FFFD.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

#include <string>

namespace kmf {

KINEMO_PLATFORM_API ustring utf8_string_to_ustring(const std::string& text);
KINEMO_PLATFORM_API std::string ustring_to_utf8_string(const ustring& text);
KINEMO_PLATFORM_API ustring local_encoded_string_to_ustring(const std::string& text);
KINEMO_PLATFORM_API std::string ustring_to_local_encoded_string(const ustring& text);

/// `text` with every code unit `unwanted` replaced by `replacement`.
KINEMO_PLATFORM_API ustring get_sanitized_ustring(const ustring& text, char16_t unwanted, char16_t replacement);

/// `text` with the letters A to Z in lower case; other bytes stay.
KINEMO_PLATFORM_API std::string lower(const std::string& text);

}  // namespace kmf
