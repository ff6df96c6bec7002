#pragma once

// The step that keeps parameters tunable after a compile: what was computed from a run-time name at the top of the
// model becomes an expression over that name again, down through the masks of subgraphs.

#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "common/gl/gti/src/kernel/parameters/component_rewriting.hpp"
#include "common/gl/gti/src/kernel/parameters/id_set.hpp"
#include "platform/graph_core/graph.hpp"

namespace gl::gti {

struct PropagationResult {
  gl::core::Graph graph;
  gl::core::RuntimeParameterInfo info;  ///< what the graph uses, and no non-value names
};

struct GraphRewrite {
  gl::core::Graph graph;
  IdSet used;  ///< the run-time names that the graph depends on from outside
};

/// A new graph and a new list of run-time parameters. Every component of `graph` must have an entry. `warn` says
/// whether refused expressions are told to the user; it changes nothing else. Linear, up to logarithms, and without
/// recursion.
/// @throws as `parameter_rewrites` and `unique_graph_ids`, and what the blocks raise
PropagationResult propagate_runtime_parameters(const gl::core::Graph& graph, const BlockEntryMap& entries,
                                               const gl::core::RuntimeParameterInfo& info, bool warn);

/// One level with all levels below it.
GraphRewrite propagate_graph(const gl::core::Graph& graph, const BlockEntryMap& entries, const IdSet& runtimeIds,
                             const IdSet& nonValueIds, bool warn);

/// One subgraph. Its parameters with a value are run-time names inside it; those that nothing inside uses are dropped.
/// A refused expression gives the warning "kinemo:common:gl:gti:rtp" "InvalidNonValueReferenceMask" (subsystem,
/// parameter, name) if `warn`.
ComponentRewrite propagate_subgraph(gl::core::Component component, const BlockEntryMap& entries,
                                    const IdSet& runtimeIds, const IdSet& nonValueIds, bool warn);

}  // namespace gl::gti
