#include "formats/model_format.hpp"

#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <array>
#include <filesystem>

namespace kinemo::formats {

namespace {

/// Whether the text begins as a diagram does: a mapping of JSON, or YAML whose first key is one of a model.
bool looks_like_diagram(std::string_view text) {
  constexpr std::array<std::string_view, 7> first_keys{"kinemo",     "name",   "settings", "workspace",
                                                       "dictionary", "blocks", "lines"};
  constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
  if (text.substr(0, byte_order_mark.size()) == byte_order_mark) text.remove_prefix(byte_order_mark.size());
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string_view::npos || line[start] == '#' || line.substr(start, 3) == "---") continue;
    if (line[start] == '{') return true;
    const std::string_view key = line.substr(0, line.find(':'));
    return key.size() < line.size() && std::find(first_keys.begin(), first_keys.end(), key) != first_keys.end();
  }
  return false;
}

}  // namespace

ModelFormat detect_format(const std::string& file, std::string_view text) {
  const std::string extension = kmf::lower(std::filesystem::path(file).extension().string());
  for (const char* known : {".yaml", ".yml", ".json"}) {
    if (extension == known) return ModelFormat::diagram;
  }
  for (const char* known : {".cir", ".sp", ".spice", ".net", ".ckt", ".cdl"}) {
    if (extension == known) return ModelFormat::spice;
  }
  return looks_like_diagram(text) ? ModelFormat::diagram : ModelFormat::spice;
}

}  // namespace kinemo::formats
