#include "formats/read_text.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <istream>
#include <vector>

namespace kinemo::formats {

namespace {

struct OpenFile {
  explicit OpenFile(int opened) : number(opened) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() {
    if (number >= 0) {
      ::close(number);
    }
  }
  int number;
};

/// `read` fills a chunk and tells its length: 0 at the end, negative for an error of the system.
template <class Read>
std::optional<std::string> read_all(const Read& read, std::string& reason) {
  std::string text;
  std::vector<char> chunk(std::size_t{1} << 16);
  for (::ssize_t length = 0; (length = read(chunk)) != 0;) {
    if (length < 0) {
      reason = std::strerror(errno != 0 ? errno : EIO);
      return std::nullopt;
    }
    text.append(chunk.data(), static_cast<std::size_t>(length));
    if (text.size() > largest_model_file) {
      reason = "it is larger than " + std::to_string(largest_model_file) + " bytes";
      return std::nullopt;
    }
  }
  return text;
}

}  // namespace

std::optional<std::string> read_text(std::istream& stream, std::string& reason) {
  const auto read = [&stream](std::vector<char>& chunk) -> ::ssize_t {
    errno = 0;
    stream.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    return stream.bad() ? -1 : stream.gcount();
  };
  return read_all(read, reason);
}

std::optional<std::string> read_text(const std::string& path, std::string& reason) {
  // a pipe that nobody writes to, or a line without a carrier, would keep a plain open waiting
  const OpenFile file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  if (file.number < 0 || ::fstat(file.number, &status) != 0) {
    reason = std::strerror(errno);
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) {
    reason = S_ISDIR(status.st_mode) ? "it is a folder" : "it isn't a regular file";
    return std::nullopt;
  }
  const auto read = [&file](std::vector<char>& chunk) {
    ::ssize_t length = 0;
    do {
      length = ::read(file.number, chunk.data(), chunk.size());
    } while (length < 0 && errno == EINTR);
    return length;
  };
  return read_all(read, reason);
}

std::optional<std::string> read_given_text(const std::string& path, std::string& reason) {
  std::error_code status;
  const std::filesystem::file_type type = std::filesystem::status(path, status).type();
  if (type != std::filesystem::file_type::fifo && type != std::filesystem::file_type::character) {
    return read_text(path, reason);
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
