#include "domains/physical/icon_folder.hpp"

#include <dlfcn.h>

namespace kinemo::physical {

namespace {

/// The file that this code was loaded from; empty when the loader doesn't know.
std::filesystem::path this_file() {
  static const char inside = 0;
  Dl_info info{};
  if (dladdr(&inside, &info) == 0 || !info.dli_fname) return {};
  // The loader may tell a path as it was given; the working folder may change later.
  std::error_code error;
  return std::filesystem::absolute(info.dli_fname, error);
}

}  // namespace

const std::filesystem::path& icon_folder() {
  static const std::filesystem::path folder = this_file().parent_path() / "icons" / "physical";
  return folder;
}

}  // namespace kinemo::physical
