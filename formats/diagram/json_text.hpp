// A tree of YAML as JSON: aliases written out, numbers only where a diagram file needs them.
#pragma once

#include "formats/diagram/yaml_tree.hpp"

#include <cstddef>
#include <string>

namespace kinemo::formats::diagram {

/// The text of a file. It ends early once it has more than `limit` bytes. A key that is longer than readers look ahead
/// for its colon is told in `too_long`, which the tree owns; null otherwise.
std::string json_text(const YamlNode& root, std::size_t limit, const std::string*& too_long);

}  // namespace kinemo::formats::diagram
