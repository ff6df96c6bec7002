// A file that is being written under a name of its own until it is whole.
#pragma once

#include <filesystem>
#include <string>

namespace kinemo::formats {

/// Writes go to a temporary file beside the path, which `commit` renames; without it, the file is as it was before. A
/// file that is replaced leaves its permissions to the new one. Devices and pipes are written directly; a link stays a
/// link, and what it leads to is replaced. Where something can't be done, errno says why.
class NewFile {
 public:
  explicit NewFile(const std::string& path);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();

  bool is_open() const { return descriptor_ >= 0; }
  /// To write to; valid until `commit`.
  int descriptor() const { return descriptor_; }
  /// Closes the file and puts it into its place.
  bool commit();

 private:
  int descriptor_ = -1;
  std::filesystem::path temporary_;  ///< empty where the file is written directly
  std::filesystem::path final_;
};

}  // namespace kinemo::formats
