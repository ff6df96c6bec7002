#pragma once

// The walk over the entries of nested graphs, in the order of their addresses, without recursion.

#include "platform/graph_core/graph.hpp"

#include <cstddef>
#include <vector>

namespace gl::core::detail {

/// Calls `visitor.component(address, component)` and `visitor.node(address, node)` for all entries down to `depth`
/// levels. Addresses are told from `root` on and come in ascending order, each enclosing entry before what it holds.
template <class Visitor>
class Walk {
 public:
  Walk(const Graph& root, std::size_t depth, Visitor& visitor) : depth_(depth), visitor_(visitor) {
    if (depth_ > 0) enter(root);
  }

  void operator()() {
    while (!levels_.empty()) step();
  }

 private:
  struct Level {
    std::map<kmf::VnId, Component>::const_iterator component, componentEnd;
    std::map<kmf::VnId, Node>::const_iterator node, nodeEnd;
  };

  void enter(const Graph& graph) {
    levels_.push_back(
        {graph.components().begin(), graph.components().end(), graph.nodes().begin(), graph.nodes().end()});
  }

  void step() {
    Level& level = levels_.back();
    const bool component = level.component != level.componentEnd;
    const bool node = level.node != level.nodeEnd;
    if (node && (!component || level.node->first < level.component->first)) {
      visit_node(*level.node++);
    } else if (component) {
      visit_component(*level.component++);
    } else {
      leave();
    }
  }

  void visit_node(const std::pair<const kmf::VnId, Node>& entry) {
    at_.append(entry.first);
    visitor_.node(at_, entry.second);
    at_.chop(at_.end() - 1);
  }

  void visit_component(const std::pair<const kmf::VnId, Component>& entry) {
    at_.append(entry.first);
    visitor_.component(at_, entry.second);
    if (levels_.size() < depth_ && entry.second.isSubgraph()) {
      enter(entry.second.graph());
    } else {
      at_.chop(at_.end() - 1);
    }
  }

  void leave() {
    levels_.pop_back();
    if (!levels_.empty()) at_.chop(at_.end() - 1);
  }

  std::size_t depth_;
  Visitor& visitor_;
  std::vector<Level> levels_;
  kmf::VnIdPath at_;
};

template <class Visitor>
void walk(const Graph& root, std::size_t depth, Visitor& visitor) {
  Walk<Visitor>(root, depth, visitor)();
}

}  // namespace gl::core::detail
