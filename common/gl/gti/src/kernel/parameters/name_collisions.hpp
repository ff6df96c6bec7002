#pragma once

// New identifiers for components, nodes and connectors that bear the name of a run-time parameter in their scope. At
// the top the names to avoid are given; inside a subgraph they are its parameters and connectors. Parameters keep their
// names, and expressions are not touched.

#include "common/gl/gti/src/kernel/parameters/id_set.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/unordered_map.hpp>

namespace gl::gti {

/// Old to new, with an entry for every identifier of a level, also for those that stay.
using IdRenames = boost::unordered_map<kmf::VnId, kmf::VnId>;

struct GraphIdRewrite {
  gl::core::Graph graph;
  IdRenames renames;  ///< of its components and nodes
};

struct SubgraphIdRewrite {
  gl::core::Component component;
  IdRenames renames;  ///< of its connectors
};

/// Only what collides changes; a new name is none of `reserved`, of `ids`, or another new one.
IdRenames id_renames(const IdSet& ids, const IdSet& reserved);

/// The graph with all levels below it, where no entry bears a reserved name. Linear, up to logarithms, and without
/// recursion. A level is built anew only where one of its names or something below it changes; all others are shared
/// with the old graph. That can't be seen, since graphs are values: a level built anew without a rename has the same
/// entries, its connections are an ordered set, its exports are repeated in the order of the nodes, in which the
/// translation made them, and who writes to a shared level gets a copy.
/// @throws std::out_of_range for a connection that leads nowhere, and the graph core's errors
GraphIdRewrite unique_graph_ids(gl::core::Graph graph, const IdSet& reserved);

/// The graph of `unique_graph_ids` alone, without the table of the names that stay.
gl::core::Graph without_collisions(const gl::core::Graph& graph, const IdSet& reserved);

/// The same for one subgraph, whose scope starts afresh.
SubgraphIdRewrite unique_subgraph_ids(gl::core::Component component);

}  // namespace gl::gti
