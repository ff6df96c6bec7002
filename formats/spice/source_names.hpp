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

/// The names of a net, the best one first, and how many levels down its system is.
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

/// All components that are asked for belong to one model and stay where they are.
class SourceNames {
 public:
  virtual ~SourceNames() = default;
  /// The net at a connector of a component that is no subgraph.
  virtual SourceNet net(const gl::core::Component& component, const kmf::VnId& connector) const;
  virtual SourceNetNames names(SourceNet net) const;
  /// The ports of the subsystem that a subgraph stands for, in their order.
  virtual std::vector<SourcePort> ports(const gl::core::Component& subgraph) const;
  /// The name of what a subgraph is an instance of. Empty where it has none.
  virtual std::string definition_name(const gl::core::Component& subgraph) const;
  /// The place where the component's block was written.
  virtual SourcePlace place(const gl::core::Component& component) const;
};

/// The path of the component's block, and the last name in it.
std::string block_path(const gl::core::Component& component);
std::string block_name(const gl::core::Component& component);

}  // namespace kinemo::formats::spice
