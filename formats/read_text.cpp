#include "formats/read_text.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <vector>

namespace kinemo::formats {

std::optional<std::string> read_text(std::istream& stream, std::string& reason) {
  std::string text;
  std::vector<char> chunk(std::size_t{1} << 16);
  while (stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size())), stream.gcount() > 0) {
    text.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
    if (text.size() > largest_model_file) {
      reason = "it is larger than " + std::to_string(largest_model_file) + " bytes";
      return std::nullopt;
    }
  }
  if (stream.bad()) {
    reason = std::strerror(errno != 0 ? errno : EIO);
    return std::nullopt;
  }
  return text;
}

std::optional<std::string> read_text(const std::string& path, std::string& reason) {
  std::error_code status;
  if (std::filesystem::is_directory(path, status)) {
    reason = "it is a folder";
    return std::nullopt;
  }
  errno = 0;
  std::ifstream stream(path, std::ios::binary);
  if (!stream) {
    reason = std::strerror(errno != 0 ? errno : ENOENT);
    return std::nullopt;
  }
  return read_text(stream, reason);
}

}  // namespace kinemo::formats
