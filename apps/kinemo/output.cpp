#include "apps/kinemo/output.hpp"

#include "apps/kinemo/exit_codes.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace kinemo::app {

namespace fs = std::filesystem;

DescriptorBuffer::DescriptorBuffer(int descriptor) : descriptor_(descriptor), buffer_(std::size_t{1} << 16) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

bool DescriptorBuffer::flush_all() {
  const char* at = pbase();
  while (error_ == 0 && at < pptr()) {
    const ssize_t written = ::write(descriptor_, at, static_cast<std::size_t>(pptr() - at));
    if (written >= 0) {
      at += written;
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return error_ == 0;
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type c) {
  if (!flush_all()) return traits_type::eof();
  if (!traits_type::eq_int_type(c, traits_type::eof())) sputc(traits_type::to_char_type(c));
  return traits_type::not_eof(c);
}

int DescriptorBuffer::sync() {
  return flush_all() ? 0 : -1;
}

/// The file that is written, and the one that it becomes.
struct Output::Target {
  int descriptor = STDOUT_FILENO;
  std::string shown = "standard output";
  fs::path temporary;  ///< empty where the target is written directly
  fs::path final;

  ~Target() {
    if (descriptor != STDOUT_FILENO) ::close(descriptor);
    if (!temporary.empty()) ::unlink(temporary.c_str());
  }
};

namespace {

[[noreturn]] void cannot_write(const std::string& shown, int error) {
  throw UsageError("can't write " + shown + ": " + std::strerror(error));
}

bool is_special(const fs::path& path) {
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  return fs::exists(status) && !fs::is_regular_file(status);
}

}  // namespace

Output::Output(const std::string& file)
    : target_([&] {
        auto target = std::make_unique<Target>();
        if (file.empty() || file == "-") return target;
        target->shown = "'" + file + "'";
        std::error_code ignored;
        // A link stays a link: what it leads to is replaced.
        target->final = fs::is_symlink(file, ignored) ? fs::weakly_canonical(file, ignored) : fs::path(file);
        const bool special = is_special(target->final);
        fs::path written = target->final;
        if (!special) {
          written.replace_filename("." + target->final.filename().string() + "." + std::to_string(::getpid()) + ".tmp");
        }
        const int flags = O_WRONLY | O_CLOEXEC | (special ? 0 : O_CREAT | O_EXCL);
        const int descriptor = ::open(written.c_str(), flags, 0666);
        if (descriptor < 0) cannot_write(target->shown, errno);
        target->descriptor = descriptor;
        if (!special) target->temporary = written;
        return target;
      }()),
      buffer_(target_->descriptor),
      stream_(&buffer_) {}

Output::~Output() = default;

void Output::check() {
  if (buffer_.error() == EPIPE) throw ClosedPipe();
  if (buffer_.error() != 0) cannot_write(target_->shown, buffer_.error());
}

void Output::commit() {
  stream_.flush();
  check();
  if (target_->temporary.empty()) return;
  if (::rename(target_->temporary.c_str(), target_->final.c_str()) != 0) cannot_write(target_->shown, errno);
  target_->temporary.clear();
}

}  // namespace kinemo::app
