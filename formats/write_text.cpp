#include "formats/write_text.hpp"

#include "formats/new_file.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace kinemo::formats {

namespace {

bool write_all(int descriptor, const std::string& text) {
  for (std::size_t at = 0; at < text.size();) {
    const ssize_t written = ::write(descriptor, text.data() + at, text.size() - at);
    if (written < 0 && errno != EINTR) return false;
    if (written > 0) at += static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

bool write_text(const std::string& path, const std::string& text, std::string& reason) {
  errno = 0;
  NewFile file(path);
  if (file.is_open() && write_all(file.descriptor(), text) && file.commit()) return true;
  reason = std::strerror(errno);
  return false;
}

}  // namespace kinemo::formats
