#include "embedded/block_diagram/edit.hpp"
#include "embedded/expression/print.hpp"
#include "formats/diagram/writing.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace kinemo::formats::diagram {

namespace {

/// Four finite numbers of a text such as "[10 20 40 60]": left, top, right, bottom.
std::optional<std::array<double, 4>> edges_of(const ustring& position) {
  std::string text = kmf::ustring_to_utf8_string(position);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '[' || c == ']' || c == ','; }, ' ');
  std::array<double, 4> edges{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (double& edge : edges) {
    while (at < end && *at == ' ') ++at;
    const auto [stop, error] = std::from_chars(at, end, edge);
    if (error != std::errc() || !std::isfinite(edge)) return std::nullopt;
    at = stop;
  }
  while (at < end && *at == ' ') ++at;
  if (at != end) return std::nullopt;
  return edges;
}

/// The shortest number that added to `from` gives `to`, which is what a reader does. None where there is no such
/// number.
std::optional<double> distance(double from, double to) {
  const double difference = to - from;
  std::array<char, 64> digits{};
  for (int precision = 1; precision <= 17; ++precision) {
    const auto told =
        std::to_chars(digits.data(), digits.data() + digits.size(), difference, std::chars_format::general, precision);
    double rounded = 0;
    std::from_chars(digits.data(), told.ptr, rounded);
    if (from + rounded == to) return rounded;
  }
  return std::nullopt;
}

std::optional<std::string> at_text(const ustring& position) {
  const auto edges = edges_of(position);
  if (!edges) return std::nullopt;
  const auto [left, top, right, bottom] = *edges;
  const auto width = distance(left, right);
  const auto height = distance(top, bottom);
  if (!width || !height) return std::nullopt;
  std::vector<std::string> numbers;
  for (const double number : {left, top, *width, *height}) {
    numbers.push_back(embedded::expression::print_number(number));
  }
  return yaml_list(numbers);
}

void add_place(Writing& writing, const GTBlock& block, const std::string& name, const ustring& text,
               YamlEntries& entries) {
  if (name == "Rotation") {
    const bool known = text == u"0" || text == u"90" || text == u"180" || text == u"270";
    if (known) return entries.emplace_back("rotate", kmf::ustring_to_utf8_string(text)), void();
    return writing.refuse(&block, "the rotation '" + kmf::ustring_to_utf8_string(text) + "' can't be written",
                          "0, 90, 180, 270");
  }
  const auto at = at_text(text);
  if (at) return entries.emplace_back("at", *at), void();
  writing.refuse(&block, "the position '" + kmf::ustring_to_utf8_string(text) + "' can't be written",
                 "four finite numbers of like size: left, top, right, bottom");
}

/// Parameters that differ from what a block has when it is placed.
YamlEntries changed_parameters(Writing& writing, const GTBlock& block) {
  YamlEntries entries;
  const BlockDefaults& defaults = writing.defaults(host::libraryName(block));
  for (const std::string& name : host::parameterNames(block)) {
    const ustring text = host::parameter(block, name);
    const auto usual = defaults.parameters.find(name);
    if (usual != defaults.parameters.end() && usual->second == text) continue;
    entries.emplace_back(writing.name(&block, name), writing.value(&block, text));
  }
  return entries;
}

}  // namespace

YamlEntries place_entries(Writing& writing, const GTBlock& block, const std::map<std::string, ustring>& known,
                          YamlEntries* parameters) {
  YamlEntries entries;
  for (const auto& [name, text] : host::properties(block)) {
    if (name == "Position" || name == "Rotation") {
      add_place(writing, block, name, text, entries);
      continue;
    }
    const auto usual = known.find(name);
    if (usual != known.end() && usual->second == text) continue;
    if (parameters != nullptr) {
      parameters->emplace_back(writing.name(&block, name), writing.value(&block, text));
    } else {
      writing.refuse(&block, "the block's property '" + name + "' has no place in a file", "Position, Rotation");
    }
  }
  return entries;
}

void write_library_block(Writing& writing, const GTBlock& block, std::size_t indent) {
  if (host::libraryName(block).empty()) {
    return writing.refuse(&block, "the block comes from no library, so a file can't name its type");
  }
  const YamlEntries parameters = changed_parameters(writing, block);
  YamlEntries entries{{"type", writing.name(&block, host::libraryName(block))}};
  const YamlEntries place =
      place_entries(writing, block, writing.defaults(host::libraryName(block)).properties, nullptr);
  entries.insert(entries.end(), place.begin(), place.end());
  writing.block(indent, writing.name(&block, block.getGrName()), entries, parameters);
}

}  // namespace kinemo::formats::diagram
