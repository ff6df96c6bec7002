// Which nodes of a compiled model are ground: all that touch a reference, through the levels.
#pragma once

#include <unordered_map>
#include <unordered_set>

#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

using Ids = std::unordered_set<kmf::VnId>;

/// Refers to the model that it was made from, which must outlive it. Linear in the size of the model.
class Grounds {
 public:
  explicit Grounds(const gl::core::Graph& top);

  /// The connectors of a subgraph that references inside of it put to ground.
  const Ids& inside(const gl::core::Component& subgraph) const;
  /// The nodes of a level that are ground; `outside` are the owner's connectors that are ground around it.
  Ids nodes(const gl::core::Component* owner, const gl::core::Graph& level, const Ids& outside) const;

 private:
  Ids from_inside(const gl::core::Graph& level) const;

  std::unordered_map<const gl::core::Component*, Ids> m_inside;  ///< without those that have none
};

/// Whether the component is a reference, which stands for ground and for nothing else.
bool is_reference(const gl::core::Component& component);

}  // namespace kinemo::formats::spice
