#include "embedded/foundation/read_file.hpp"

#include <filesystem>
#include <fstream>

namespace kmf::embedded {

boost::optional<std::string> read_regular_file(const std::string& path, std::size_t limit) {
  namespace fs = std::filesystem;
  std::error_code error;
  if (!fs::is_regular_file(path, error)) return boost::none;
  const std::uintmax_t size = fs::file_size(path, error);
  if (error || size > limit) return boost::none;
  std::ifstream in(path, std::ios::binary);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  if (!in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()))) return boost::none;
  return bytes;
}

}  // namespace kmf::embedded
