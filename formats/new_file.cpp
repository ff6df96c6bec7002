#include "formats/new_file.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace kinemo::formats {

namespace fs = std::filesystem;

NewFile::NewFile(const std::string& path) {
  std::error_code ignored;
  final_ = fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : fs::path(path);
  const fs::file_status status = fs::status(final_, ignored);
  const bool special = fs::exists(status) && !fs::is_regular_file(status);
  fs::path written = final_;
  if (!special) written.replace_filename("." + final_.filename().string() + "." + std::to_string(::getpid()) + ".tmp");
  descriptor_ = ::open(written.c_str(), O_WRONLY | O_CLOEXEC | (special ? 0 : O_CREAT | O_EXCL), 0666);
  if (descriptor_ >= 0 && !special) temporary_ = written;
}

NewFile::~NewFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

bool NewFile::commit() {
  const int descriptor = std::exchange(descriptor_, -1);
  if (::close(descriptor) != 0) return false;
  if (temporary_.empty()) return true;
  if (::rename(temporary_.c_str(), final_.c_str()) != 0) return false;
  temporary_.clear();
  return true;
}

}  // namespace kinemo::formats
