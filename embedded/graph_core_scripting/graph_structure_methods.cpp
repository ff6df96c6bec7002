// Methods of kinemo.gl.Graph that follow its structure: subgraphs, pieces, nets.

#include "embedded/class_system/objects.hpp"
#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/graph_core_scripting/net_pins.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "platform/foundation/exception.hpp"

namespace embedded::graph_core_scripting {

namespace {

using gl::core::Graph;
using scripting_runtime::Call;

const Graph& graph_of(const Call& call) {
  return class_system::single<Graph>(call[0]);
}

void subgraph(Call& call) {
  const Graph& inside = find_graph(graph_of(call), names_in(call[1]));
  call.give(class_system::array_of(class_system::object_around(graph_class_name, inside)));
}

void connected_components(Call& call) {
  const std::vector<Graph> pieces = gl::core::ConnectedComponents()(graph_of(call));
  cvUniquePtr list(omCreateCCOSMatrix(pieces.size(), 1, graph_class_name));
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    omSetArrayElement(list.get(), i, class_system::object_around(graph_class_name, pieces[i]));
  }
  call.give(std::move(list));
}

struct Port {
  std::vector<std::string> component;
  std::string name;
};

/// "a/b.port", or the path and the port as two inputs.
Port port_in(const Call& call) {
  if (call.size() > 2) return {names_in(call[1]), call.text(2)};
  const std::string text = call.text(1);
  const std::size_t dot = text.rfind('.');
  if (dot == std::string::npos) kmf::throw_message("kinemo:graph:scripting", "NoPortNamed", text);
  return {names_in(text.substr(0, dot)), text.substr(dot + 1)};
}

void net(Call& call) {
  const Port port = port_in(call);
  const std::vector<Pin> pins = net_pins(find_component(graph_of(call), port.component), port.name);
  cvUniquePtr list(cvCreateStructMatrix(pins.size(), 1, {"component", "connector", "block"}));
  for (std::size_t i = 0; i < pins.size(); ++i) {
    cvSetField(list.get(), i, "component", cvCreateString(pins[i].component));
    cvSetField(list.get(), i, "connector", cvCreateString(pins[i].connector));
    cvSetField(list.get(), i, "block", cvCreateString(pins[i].block));
  }
  call.give(std::move(list));
}

}  // namespace

std::vector<class_system::MethodDefinition> graph_structure_methods() {
  return {
      {"subgraph",
       {"any"},
       {},
       "",
       {"h = g.subgraph(path)", "The graph inside a component that was a subsystem.",
        "An object of the class kinemo.gl.Graph, which shares its contents with g. The empty path is g itself."},
       subgraph},
      {"connectedComponents",
       {},
       {},
       "",
       {"p = g.connectedComponents", "The pieces of a graph that no node joins.",
        "An array of graphs in one column, each with the identifiers of g: p(1).components. A piece holds of a "
        "subgraph just what belongs to the piece."},
       connected_components},
      {"net",
       {"any"},
       {"char"},
       "",
       {"p = g.net('Filter/R1.p')\np = g.net('Filter/R1', 'p')",
        "All pins that share a node with a port, through all levels.",
        "A structure array of one column with the texts component (a path of identifiers), connector and block (the "
        "path of the block), sorted. Subgraphs are followed, not listed. The port's own pin is in it."},
       net}};
}

}  // namespace embedded::graph_core_scripting
