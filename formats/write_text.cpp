#include "formats/write_text.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

namespace kinemo::formats {

namespace fs = std::filesystem;

namespace {

/// A file that is being written, under a name of its own until it is whole.
class NewFile {
 public:
  explicit NewFile(const std::string& path) {
    std::error_code ignored;
    final_ = fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : fs::path(path);
    const fs::file_status status = fs::status(final_, ignored);
    const bool special = fs::exists(status) && !fs::is_regular_file(status);
    fs::path written = final_;
    if (!special)
      written.replace_filename("." + final_.filename().string() + "." + std::to_string(::getpid()) + ".tmp");
    descriptor_ = ::open(written.c_str(), O_WRONLY | O_CLOEXEC | (special ? 0 : O_CREAT | O_EXCL), 0666);
    if (descriptor_ >= 0 && !special) temporary_ = written;
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
  }

  bool is_open() const { return descriptor_ >= 0; }

  bool write(const std::string& text) const {
    for (std::size_t at = 0; at < text.size();) {
      const ssize_t written = ::write(descriptor_, text.data() + at, text.size() - at);
      if (written < 0 && errno != EINTR) return false;
      if (written > 0) at += static_cast<std::size_t>(written);
    }
    return true;
  }

  bool commit() {
    const int descriptor = std::exchange(descriptor_, -1);
    if (::close(descriptor) != 0) return false;
    if (temporary_.empty()) return true;
    if (::rename(temporary_.c_str(), final_.c_str()) != 0) return false;
    temporary_.clear();
    return true;
  }

 private:
  int descriptor_ = -1;
  fs::path temporary_;  ///< empty where the file is written directly
  fs::path final_;
};

}  // namespace

bool write_text(const std::string& path, const std::string& text, std::string& reason) {
  errno = 0;
  NewFile file(path);
  if (file.is_open() && file.write(text) && file.commit()) return true;
  reason = std::strerror(errno);
  return false;
}

}  // namespace kinemo::formats
