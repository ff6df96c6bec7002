#include "embedded/foundation/catalogue_file.hpp"

#include <dlfcn.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kmf::embedded {
namespace {

namespace fs = std::filesystem;

// How many folders up from the library "share" is looked for: lib/ is one deep, lib/<architecture>/ two.
constexpr int kMaxLevelsUp = 3;

fs::path file_of(const fs::path& folder, const std::string& language) {
  return folder / language / "LC_MESSAGES" / "kinemo.mo";
}

fs::path folder_of_this_library() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&find_catalogue_folder), &info) == 0 || !info.dli_fname) return {};
  std::error_code error;
  const fs::path file = fs::canonical(info.dli_fname, error);
  return error ? fs::path() : file.parent_path();
}

// Reads the table of originals of a .mo file: see "The Format of GNU MO Files" in the manual of gettext.
class MoFile {
 public:
  explicit MoFile(std::vector<char> bytes) : bytes_(std::move(bytes)) {}

  bool sound() const { return number(0) == 0x950412deU; }

  std::vector<std::string> keys() const {
    std::vector<std::string> keys;
    const std::size_t count = number(8);
    const std::size_t table = number(12);
    if (table > bytes_.size() || count > (bytes_.size() - table) / 8) return keys;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t size = number(table + 8 * i);
      const std::size_t at = number(table + 8 * i + 4);
      if (size > 0 && at <= bytes_.size() && size <= bytes_.size() - at) keys.emplace_back(bytes_.data() + at, size);
    }
    return keys;
  }

 private:
  std::uint32_t number(std::size_t at) const {
    std::uint32_t value = 0;
    if (at + sizeof value <= bytes_.size()) std::memcpy(&value, bytes_.data() + at, sizeof value);
    return value;
  }

  std::vector<char> bytes_;
};

}  // namespace

bool catalogue_file_exists(const std::string& folder, const std::string& language) {
  std::error_code error;
  return fs::is_regular_file(file_of(folder, language), error);
}

std::string find_catalogue_folder(const std::string& language) {
  fs::path at = folder_of_this_library();
  for (int level = 0; level <= kMaxLevelsUp && !at.empty(); ++level) {
    const fs::path folder = at / "share" / "kinemo" / "messages";
    if (catalogue_file_exists(folder.string(), language)) return folder.string();
    if (at == at.parent_path()) break;
    at = at.parent_path();
  }
  return catalogue_file_exists(KINEMO_MESSAGES_DIR, language) ? KINEMO_MESSAGES_DIR : std::string();
}

std::vector<std::string> catalogue_keys(const std::string& folder, const std::string& language) {
  std::ifstream in(file_of(folder, language), std::ios::binary);
  const MoFile file(std::vector<char>(std::istreambuf_iterator<char>(in), {}));
  return file.sound() ? file.keys() : std::vector<std::string>();
}

}  // namespace kmf::embedded
