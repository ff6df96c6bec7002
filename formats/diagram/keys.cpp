#include "formats/diagram/keys.hpp"

#include <array>

namespace kinemo::formats::diagram {

namespace {

struct Keys {
  std::string_view name;
  std::vector<std::string> keys;
};

/// In the order of `ObjectKind`.
const std::array<Keys, 12>& table() {
  static const std::array<Keys, 12> rows{{
      {"a model", {"kinemo", "name", "settings", "workspace", "dictionary", "blocks", "lines"}},
      {"a part",
       {"kinemo", "name", "atomic", "opaque", "variant", "mask", "mask_type", "mask_description", "parameters", "ports",
        "blocks", "lines"}},
      {"a data dictionary", {"kinemo", "name", "variables"}},
      {"a variable", {"value", "unit", "runtime"}},
      {"a block", {"type", "parameters", "at", "rotate", "mirror"}},
      {"a subsystem",
       {"type", "atomic", "opaque", "variant", "mask", "mask_type", "mask_description", "parameters", "ports", "blocks",
        "lines", "at", "rotate", "mirror"}},
      {"a linked subsystem", {"type", "atomic", "mask", "parameters", "at", "rotate", "mirror"}},
      {"a variant", {"choices", "active"}},
      {"a mask parameter", {"value", "unit", "prompt", "kind", "choices"}},
      {"a set of ports", {"left", "right"}},
      {"a port", {"name", "at", "rotate", "mirror"}},
      {"a line", {"name", "ports"}},
  }};
  return rows;
}

}  // namespace

const std::vector<std::string>& keys_of(ObjectKind kind) {
  return table()[static_cast<std::size_t>(kind)].keys;
}

std::string_view object_name(ObjectKind kind) {
  return table()[static_cast<std::size_t>(kind)].name;
}

}  // namespace kinemo::formats::diagram
