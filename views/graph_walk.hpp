// The walk through nested graphs that several views make.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <map>
#include <string>
#include <vector>

namespace kinemo::views {

/// A graph of the walk, and the subgraph component whose graph it is: null at the root.
struct GraphLevel {
  const gl::core::Graph* graph;
  const kmf::VnId* id;
  const gl::core::Component* owner;
};

/// Calls, in the order of the identifiers:
/// - `visitor.enter(level)` and `visitor.leave(level)` around what belongs to a graph;
/// - `visitor.component(level, id, component)` for each component, a subgraph's directly before its graph is entered.
/// Keeps a stack of its own, so that depth is no matter.
template <class Visitor>
void walk_graphs(const gl::core::Graph& root, Visitor& visitor) {
  struct Place {
    GraphLevel level;
    std::map<kmf::VnId, gl::core::Component>::const_iterator next;
  };
  std::vector<Place> places;
  const auto enter = [&](const GraphLevel& level) {
    places.push_back({level, level.graph->components().begin()});
    visitor.enter(level);
  };
  enter({&root, nullptr, nullptr});
  while (!places.empty()) {
    Place& place = places.back();
    if (place.next == place.level.graph->components().end()) {
      visitor.leave(place.level);
      places.pop_back();
      continue;
    }
    const auto& [id, component] = *place.next++;
    visitor.component(place.level, id, component);
    if (component.isSubgraph()) enter({&component.graph(), &id, &component});
  }
}

/// The path of the graph that a walk is in, to be told of its levels.
class GraphPath {
 public:
  /// What stands between and behind the names of the path.
  explicit GraphPath(char separator) : separator_(separator) {}

  void enter(const GraphLevel& level) {
    lengths_.push_back(text_.size());
    if (level.id) text_.append(level.id->view()).push_back(separator_);
  }
  void leave() {
    text_.resize(lengths_.back());
    lengths_.pop_back();
  }
  /// Empty at the root, else with a separator at its end.
  const std::string& text() const { return text_; }
  /// Of graphs that were entered.
  std::size_t depth() const { return lengths_.size(); }

 private:
  char separator_;
  std::string text_;
  std::vector<std::size_t> lengths_;
};

}  // namespace kinemo::views
