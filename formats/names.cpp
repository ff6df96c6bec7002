#include "formats/names.hpp"

#include "formats/diagnostics.hpp"

#include <algorithm>

namespace kinemo::formats {

std::string did_you_mean(std::string_view name, const std::vector<std::string>& known) {
  const std::string_view near = nearest_name(name, {known.begin(), known.end()});
  return near.empty() ? std::string() : "; did you mean '" + std::string(near) + "'?";
}

std::string list_names(const std::vector<std::string>& names, std::size_t limit) {
  if (names.empty()) return "none";
  std::string text;
  const std::size_t shown = std::min(names.size(), limit);
  for (std::size_t i = 0; i < shown; ++i) {
    text += (i == 0 ? "'" : ", '") + names[i] + "'";
  }
  if (shown < names.size()) text += " and " + std::to_string(names.size() - shown) + " more";
  return text;
}

}  // namespace kinemo::formats
