// The bytes of a file, put into their place at once.
#pragma once

#include <string>

namespace kinemo::formats {

/// Writes a temporary file beside `path` and renames it, so that the file is either as before or whole. Devices and
/// pipes are written directly; a link stays a link. False when it can't be done; `reason` says why in the system's
/// words.
bool write_text(const std::string& path, const std::string& text, std::string& reason);

}  // namespace kinemo::formats
