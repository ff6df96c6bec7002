// What a writer of netlists asks the diagram behind a compiled model. All of it is optional: a model of unknown origin
// is written with names of its own.
#pragma once

#include <string>
#include <vector>

#include "formats/diagnostics.hpp"
#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

class SourceNames {
 public:
  virtual ~SourceNames() = default;
  /// The names that the user gave a node of the level, the best one first.
  virtual std::vector<std::string> node_names(const gl::core::Graph& level, const kmf::VnId& node) const;
  /// The name of what a subgraph is an instance of; `object` is the path of its block. Empty where it has none.
  virtual std::string definition_name(const std::string& object) const;
  /// The name of the block of that path, the last one of the path.
  virtual std::string block_name(const std::string& object) const;
  /// The place where the block of that path was written.
  virtual SourcePlace place(const std::string& object) const;
};

}  // namespace kinemo::formats::spice
