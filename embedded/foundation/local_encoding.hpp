#pragma once

// The local encoding of the process: that of its C locale. The locale that a process starts with knows ASCII only;
// there, and where the system can't convert, the local encoding is UTF-8.

#include <string>

namespace kmf::embedded {

/// The name of the local encoding; empty for UTF-8.
std::string local_charset();

/// Bytes that mean nothing in the encoding become U+FFFD. In an encoding that the system doesn't know, text stays.
std::string to_utf8_from(const std::string& text, const std::string& charset);

/// Characters that the encoding lacks become "?".
std::string from_utf8_to(const std::string& text, const std::string& charset);

}  // namespace kmf::embedded
