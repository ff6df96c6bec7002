// The contents of a YAML or JSON file as a tree of plain nodes that remember where they were written. A tree owns its
// nodes; a node that the file names by an alias stands in the tree once and is reached from several places.
#pragma once

#include "formats/diagnostics.hpp"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::formats::diagram {

struct YamlNode {
  enum class Kind { null, scalar, sequence, mapping };

  Kind kind = Kind::null;
  bool open = false;                      ///< while it is being read: an alias to it would be a cycle
  std::uint32_t line = 0;                 ///< from 1
  std::uint32_t column = 0;               ///< from 1
  std::string text;                       ///< of a scalar, as it was written
  std::vector<const YamlNode*> children;  ///< items of a sequence; key, value, key, value, ... of a mapping
  std::uint64_t size = 1;                 ///< nodes below and itself, aliases counted as often as they are named

  bool is_scalar() const { return kind == Kind::scalar; }
  bool is_sequence() const { return kind == Kind::sequence; }
  bool is_mapping() const { return kind == Kind::mapping; }
  bool is_null() const { return kind == Kind::null; }

  std::size_t entry_count() const { return children.size() / 2; }
  const YamlNode& key(std::size_t entry) const { return *children[2 * entry]; }
  const YamlNode& value(std::size_t entry) const { return *children[2 * entry + 1]; }
  /// The value of a key of a mapping; null for an absent one and for a node of another kind.
  const YamlNode* find(std::string_view name) const;
};

/// "a mapping", "a list", "a text" or "nothing".
std::string_view kind_name(YamlNode::Kind kind);

class YamlTree {
 public:
  /// Reads one document. Everything that is wrong with the text goes to `problems`, and then the tree has no root.
  /// Nodes may be nested `depth_limit` deep; aliases may blow the tree up to `size_limit` nodes.
  YamlTree(const std::string& text, const std::string& file, DiagnosticList& problems);

  const YamlNode* root() const { return root_; }

  static constexpr std::uint64_t size_limit = 50'000'000;
  static constexpr std::size_t depth_limit = 6000;

 private:
  std::deque<YamlNode> nodes_;
  const YamlNode* root_ = nullptr;
};

}  // namespace kinemo::formats::diagram
