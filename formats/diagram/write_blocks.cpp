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

/// How a property of a block stands in a file.
struct PlaceProperty {
  const char* name;
  const char* key;
  const char* valid;
  std::optional<std::string> (*yaml)(const ustring& text);  ///< the value; none where a file can't hold the text
};

std::optional<std::string> rotation_text(const ustring& rotation) {
  const bool known = rotation == u"0" || rotation == u"90" || rotation == u"180" || rotation == u"270";
  return known ? std::optional(kmf::ustring_to_utf8_string(rotation)) : std::nullopt;
}

std::optional<std::string> switch_text(const ustring& text) {
  return text == u"on" || text == u"off" ? std::optional(kmf::ustring_to_utf8_string(text)) : std::nullopt;
}

constexpr PlaceProperty place_properties[] = {
    {"Position", "at", "four finite numbers of like size: left, top, right, bottom", at_text},
    {"Rotation", "rotate", "0, 90, 180, 270", rotation_text},
    {"Mirror", "mirror", "on, off", switch_text},
};

void add_place(Writing& writing, const GTBlock& block, const PlaceProperty& property, YamlEntries& entries) {
  const auto& properties = host::properties(block);
  const auto found = properties.find(property.name);
  if (found == properties.end()) return;
  if (const auto yaml = property.yaml(found->second)) {
    entries.emplace_back(property.key, *yaml);
    return;
  }
  writing.refuse(&block,
                 std::string("the property '") + property.name + "' can't be '" +
                     kmf::ustring_to_utf8_string(found->second) + "' in a file",
                 property.valid);
}

bool is_place(const std::string& name) {
  return std::any_of(std::begin(place_properties), std::end(place_properties),
                     [&](const PlaceProperty& property) { return name == property.name; });
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
  for (const PlaceProperty& property : place_properties) add_place(writing, block, property, entries);
  for (const auto& [name, text] : host::properties(block)) {
    if (is_place(name)) continue;
    const auto usual = known.find(name);
    if (usual != known.end() && usual->second == text) continue;
    if (parameters != nullptr) {
      parameters->emplace_back(writing.name(&block, name), writing.value(&block, text));
    } else {
      writing.refuse(&block, "the block's property '" + name + "' has no place in a file",
                     "Position, Rotation, Mirror");
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
