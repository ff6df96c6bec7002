// Where the data of a command goes: standard output or a file. Owned by the command, and good only once `commit` has
// returned.
#pragma once

#include <memory>
#include <ostream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <vector>

namespace kinemo::app {

/// Whoever reads our output has gone; there is no one to tell.
class ClosedPipe : public std::exception {};

/// Writes to a file descriptor in large pieces, and keeps the first error.
class DescriptorBuffer : public std::streambuf {
 public:
  explicit DescriptorBuffer(int descriptor);
  /// 0, or the errno of the first write that failed.
  int error() const { return error_; }

 protected:
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  bool flush_all();

  int descriptor_;
  int error_ = 0;
  std::vector<char> buffer_;
};

class Output {
 public:
  /// `file` is a path; "-" or the empty text is standard output. @throws UsageError where it can't be written
  explicit Output(const std::string& file);
  /// Without `commit`, the file is as it was before.
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  std::ostream& stream() { return stream_; }
  /// Writes what is left and puts the file into its place at once. @throws UsageError, ClosedPipe
  void commit();

 private:
  struct Target;
  void check();

  std::unique_ptr<Target> target_;
  DescriptorBuffer buffer_;
  std::ostream stream_;
};

}  // namespace kinemo::app
