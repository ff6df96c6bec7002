// The class kinemo.gl.Graph as a whole; its methods stand in graph_…_methods.cpp.

#include "embedded/graph_core_scripting/script_classes.hpp"
#include "platform/graph_core/graph.hpp"

#include <iterator>

namespace embedded::graph_core_scripting {

namespace {

std::string counted(std::size_t count, const char* noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string summary(const gl::core::Graph& graph) {
  std::size_t subgraphs = 0;
  for (const auto& entry : graph.components()) subgraphs += entry.second.isSubgraph() ? 1 : 0;
  std::string text = "Graph of " + counted(graph.components().size(), "component");
  if (subgraphs > 0) text += " (" + counted(subgraphs, "subgraph") + ')';
  return text + ", " + counted(graph.nodes().size(), "node") + " and " +
         counted(graph.connections(kmf::VnIdPathIterator()).size(), "connection");
}

}  // namespace

class_system::ClassDefinition graph_class() {
  auto definition = class_system::class_around<gl::core::Graph>(graph_class_name);
  definition.help = {"g = kinemo.gl.gt.graph(domain, model)",
                     "The graph of a compiled model: a value that nothing changes.",
                     "Components and nodes have identifiers, and connections tie connectors of components to nodes. A "
                     "component that was a subsystem holds a graph of its own. Components are named by paths such as "
                     "'Filter/R1', of identifiers or names of blocks; a slash in a name is written twice. "
                     "isequal(g, h) compares contents. A model that was closed is gone, a graph of it stays. "
                     "kinemo.gl.Graph() is an empty graph."};
  definition.display = [](const void* graph) { return summary(*static_cast<const gl::core::Graph*>(graph)); };
  for (auto methods : {graph_listing_methods(), graph_component_methods(), graph_structure_methods()}) {
    std::move(methods.begin(), methods.end(), std::back_inserter(definition.methods));
  }
  return definition;
}

}  // namespace embedded::graph_core_scripting
