// Methods of kinemo.gl.Graph that list and count.

#include "embedded/class_system/objects.hpp"
#include "embedded/graph_core/walk.hpp"
#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"

#include <algorithm>
#include <limits>

namespace embedded::graph_core_scripting {

namespace {

using gl::core::Graph;
using scripting_runtime::Call;

const Graph& graph_of(const Call& call) {
  return class_system::single<Graph>(call[0]);
}

template <class Entries>
cvUniquePtr ids_of(const Entries& entries) {
  std::vector<std::string> ids;
  for (const auto& entry : entries) ids.emplace_back(entry.first);
  return text_column(ids);
}

void components(Call& call) {
  call.give(ids_of(graph_of(call).components()));
}

void nodes(Call& call) {
  call.give(ids_of(graph_of(call).nodes()));
}

void connections(Call& call) {
  const auto& all = graph_of(call).connections(kmf::VnIdPathIterator());
  cvUniquePtr list(cvCreateStructMatrix(all.size(), 1, {"node", "component", "connector"}));
  std::size_t i = 0;
  for (const gl::core::Connection& connection : all) {
    cvSetField(list.get(), i, "node", cvCreateString(connection.nodeId()));
    cvSetField(list.get(), i, "component", cvCreateString(connection.connectorSpec().componentId()));
    cvSetField(list.get(), i, "connector", cvCreateString(connection.connectorSpec().connectorId()));
    ++i;
  }
  call.give(std::move(list));
}

/// What is in all levels of a graph.
struct Counts {
  explicit Counts(const Graph& top) : connections(top.connections(kmf::VnIdPathIterator()).size()) {}
  void component(const kmf::VnIdPath& address, const gl::core::Component& component) {
    levels = std::max(levels, address.size());
    ++(component.isSubgraph() ? subgraphs : leaves);
    if (component.isSubgraph()) connections += component.graph().connections(kmf::VnIdPathIterator()).size();
  }
  void node(const kmf::VnIdPath& address, const gl::core::Node&) {
    levels = std::max(levels, address.size());
    ++nodes;
  }

  std::size_t leaves = 0;
  std::size_t subgraphs = 0;
  std::size_t nodes = 0;
  std::size_t connections;
  std::size_t levels = 0;
};

void count(Call& call) {
  const Graph& graph = graph_of(call);
  Counts counts(graph);
  gl::core::detail::walk(graph, std::numeric_limits<std::size_t>::max(), counts);
  FieldValues fields;
  const auto add = [&](const char* name, std::size_t number) {
    fields.emplace_back(name, cvCreateDoubleScalar(static_cast<double>(number)));
  };
  add("components", counts.leaves);
  add("subgraphs", counts.subgraphs);
  add("nodes", counts.nodes);
  add("connections", counts.connections);
  add("levels", counts.levels);
  call.give(structure(std::move(fields)));
}

}  // namespace

std::vector<class_system::MethodDefinition> graph_listing_methods() {
  return {{"components",
           {},
           {},
           "",
           {"c = g.components", "Identifiers of the components of this level, sorted.",
            "A column of texts. Those of a subgraph: g.subgraph(path).components."},
           components},
          {"nodes",
           {},
           {},
           "",
           {"n = g.nodes", "Identifiers of the nodes of this level, sorted.", "A column of texts."},
           nodes},
          {"connections",
           {},
           {},
           "",
           {"c = g.connections", "The connections of this level, sorted by node.",
            "A structure array of one column with the texts node, component and connector: which connector of which "
            "component is tied to which node."},
           connections},
          {"count",
           {},
           {},
           "",
           {"n = g.count", "How much is in the graph, through all levels.",
            "A structure with the numbers components (those that aren't subgraphs), subgraphs, nodes, connections and "
            "levels."},
           count}};
}

}  // namespace embedded::graph_core_scripting
