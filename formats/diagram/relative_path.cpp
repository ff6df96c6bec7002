#include "formats/diagram/relative_path.hpp"

#include <filesystem>

namespace kinemo::formats::diagram {

namespace fs = std::filesystem;

namespace {

fs::path resolved(const fs::path& path) {
  std::error_code failed;
  const fs::path absolute = fs::absolute(path, failed);
  const fs::path result = fs::weakly_canonical(failed ? path : absolute, failed);
  return failed ? path.lexically_normal() : result;
}

}  // namespace

std::string relative_path(const std::string& path, const std::string& file) {
  const fs::path target = resolved(path);
  const fs::path folder = resolved(file.empty() ? fs::path("x") : fs::path(file)).parent_path();
  const fs::path relative = target.lexically_relative(folder);
  return relative.empty() ? target.string() : relative.string();
}

bool is_same_file(const std::string& a, const std::string& b) {
  return resolved(a) == resolved(b);
}

}  // namespace kinemo::formats::diagram
