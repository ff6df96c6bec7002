#include "apps/kinemo/output.hpp"

#include "apps/kinemo/exit_codes.hpp"
#include "formats/new_file.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>

namespace kinemo::app {

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

/// Standard output, where there is no file.
struct Output::Target {
  std::string shown = "standard output";
  std::optional<formats::NewFile> file = std::nullopt;

  int descriptor() const { return file ? file->descriptor() : STDOUT_FILENO; }
};

namespace {

[[noreturn]] void cannot_write(const std::string& shown, int error) {
  throw UsageError("can't write " + shown + ": " + std::strerror(error));
}

}  // namespace

Output::Output(const std::string& file)
    : target_([&] {
        auto target = std::make_unique<Target>();
        if (file.empty() || file == "-") return target;
        target->shown = "'" + file + "'";
        target->file.emplace(file);
        if (!target->file->is_open()) cannot_write(target->shown, errno);
        return target;
      }()),
      buffer_(target_->descriptor()),
      stream_(&buffer_) {}

Output::~Output() = default;

void Output::check() {
  if (buffer_.error() == EPIPE) throw ClosedPipe();
  if (buffer_.error() != 0) cannot_write(target_->shown, buffer_.error());
}

void Output::commit() {
  stream_.flush();
  check();
  if (target_->file && !target_->file->commit()) cannot_write(target_->shown, errno);
}

}  // namespace kinemo::app
