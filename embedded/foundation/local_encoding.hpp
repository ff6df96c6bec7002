#pragma once

// The local encoding of the process: that of its C locale. The locale that a process starts with knows ASCII only;
// there, and where the system can't convert, the local encoding is UTF-8.

#include <string>

namespace kmf::embedded {

/// Bytes that mean nothing in the local encoding become U+FFFD.
std::string local_to_utf8(const std::string& text);

/// Characters that the local encoding lacks become "?".
std::string utf8_to_local(const std::string& text);

}  // namespace kmf::embedded
