// What a writer of netlists asks the diagram behind a compiled model. All of it is optional: a model of unknown origin
// is written with names of its own.
#pragma once

#include <string>
#include <vector>

#include "formats/diagnostics.hpp"
#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

/// A net that the user drew in one system of the diagram; null where none is known.
using SourceNet = const void*;

/// The names of a net, in order, and how many levels down its system is.
struct SourceNetNames {
  std::size_t depth = 0;
  std::vector<std::string> names;
};

/// A port of a subsystem, and what it joins.
struct SourcePort {
  std::string name;
  SourceNet outside = nullptr;
  SourceNet inside = nullptr;
};

class SourceNames {
 public:
  virtual ~SourceNames() = default;
  /// The net at a connector of a component that is no subgraph.
  virtual SourceNet net(const gl::core::Component& component, const kmf::VnId& connector) const;
  virtual SourceNetNames names(SourceNet net) const;
  /// The ports of the subsystem that a subgraph stands for, in their order.
  virtual std::vector<SourcePort> ports(const gl::core::Component& subgraph) const;
  /// The name of what a subgraph is an instance of; `object` is the path of its block. Empty where it has none.
  virtual std::string definition_name(const std::string& object) const;
  /// The name of the block of that path, the last one of the path.
  virtual std::string block_name(const std::string& object) const;
  /// The place where the block of that path was written.
  virtual SourcePlace place(const std::string& object) const;
};

}  // namespace kinemo::formats::spice
