// Walks through the levels of a compiled model, outer ones first, without a deep stack.
#pragma once

#include <vector>

#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

/// Calls `enter(owner, graph)` for every level before those inside of it and `leave(owner, graph)` behind them. The
/// owner is null for the top.
template <class Enter, class Leave>
void walk_levels(const gl::core::Graph& top, Enter&& enter, Leave&& leave) {
  struct Level {
    const gl::core::Component* owner;
    const gl::core::Graph* graph;
    std::map<kmf::VnId, gl::core::Component>::const_iterator next;
  };
  std::vector<Level> levels;
  const auto begin = [&](const gl::core::Component* owner, const gl::core::Graph& graph) {
    enter(owner, graph);
    levels.push_back({owner, &graph, graph.components().begin()});
  };
  begin(nullptr, top);
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.graph->components().end()) {
      leave(level.owner, *level.graph);
      levels.pop_back();
      continue;
    }
    const gl::core::Component& component = (level.next++)->second;
    if (component.isSubgraph()) {
      begin(&component, component.graph());
    }
  }
}

}  // namespace kinemo::formats::spice
