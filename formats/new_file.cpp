#include "formats/new_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace kinemo::formats {

namespace fs = std::filesystem;

namespace {

/// Beside the file, and no longer than a name may be.
fs::path temporary_beside(const fs::path& file) {
  constexpr std::size_t longest_stem = 200;
  const std::string stem = file.filename().string().substr(0, longest_stem);
  fs::path temporary = file;
  return temporary.replace_filename("." + stem + "." + std::to_string(::getpid()) + ".tmp");
}

/// Who may read and write a file is its owner's choice, which a new file mustn't undo.
void take_permissions(int descriptor, const fs::file_status& replaced) {
  if (fs::exists(replaced)) ::fchmod(descriptor, static_cast<::mode_t>(replaced.permissions() & fs::perms::all));
}

}  // namespace

NewFile::NewFile(const std::string& path) {
  std::error_code ignored;
  final_ = fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : fs::path(path);
  const fs::file_status status = fs::status(final_, ignored);
  const bool special = fs::exists(status) && !fs::is_regular_file(status);
  const fs::path written = special ? final_ : temporary_beside(final_);
  descriptor_ = ::open(written.c_str(), O_WRONLY | O_CLOEXEC | (special ? 0 : O_CREAT | O_EXCL), 0666);
  if (descriptor_ < 0 || special) return;
  temporary_ = written;
  take_permissions(descriptor_, status);
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
