#pragma once

#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <map>
#include <vector>

namespace gl::gti {

/// Calls `visit(path, component)` for every component of a graph at all depths, in the order of their paths: a subgraph
/// comes before what is in it. Neither recursion nor a listing of paths: memory grows with the depth alone.
template <class Visit>
void walkComponents(const gl::core::Graph& graph, Visit visit) {
  using Iterator = std::map<kmf::VnId, gl::core::Component>::const_iterator;
  struct Place {
    Iterator at;
    Iterator end;
  };
  kmf::VnIdPath path;
  std::vector<Place> places{{graph.components().begin(), graph.components().end()}};
  while (!places.empty()) {
    Place& place = places.back();
    if (place.at == place.end) {
      places.pop_back();
      if (!path.empty()) path.chop(path.end() - 1);
      continue;
    }
    const auto& [id, component] = *place.at++;
    path.append(id);
    visit(static_cast<const kmf::VnIdPath&>(path), component);
    if (component.isSubgraph()) {
      places.push_back({component.graph().components().begin(), component.graph().components().end()});
    } else {
      path.chop(path.end() - 1);
    }
  }
}

}  // namespace gl::gti
