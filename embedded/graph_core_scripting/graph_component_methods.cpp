// Methods of kinemo.gl.Graph that tell of one component.

#include "embedded/class_system/objects.hpp"
#include "embedded/graph_core/connector_type.hpp"
#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/graph_core_scripting/component_paths.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "platform/foundation/strings.hpp"

namespace embedded::graph_core_scripting {

namespace {

using gl::core::Component;
using gl::core::Graph;
using scripting_runtime::Call;

FoundComponent found_in(const Call& call) {
  return find_component(class_system::single<Graph>(call[0]), names_in(call[1]));
}

cvUniquePtr connectors_structure(const Component& component) {
  FieldValues fields;
  for (const kmf::VnId& id : component.connectorOrder()) {
    fields.emplace_back(id, cvCreateString(graph_core::connector_type(component, id)));
  }
  return structure(std::move(fields));
}

template <class Entry>
cvUniquePtr tags_structure(const Entry& entry) {
  FieldValues fields;
  for (const kmf::VnId& key : entry.tags()) fields.emplace_back(key, variant_array(entry.tag(key)));
  return structure(std::move(fields));
}

void component(Call& call) {
  const FoundComponent found = found_in(call);
  const Component& its = found.component();
  FieldValues fields;
  fields.emplace_back("path", cvCreateString(address_text(found.address)));
  fields.emplace_back("block", cvCreateUString(gl::core::object(its)));
  fields.emplace_back("type", cvCreateString(its.type()));
  fields.emplace_back("subgraph", cvCreateLogicalScalar(its.isSubgraph()));
  fields.emplace_back("connectors", connectors_structure(its));
  fields.emplace_back("parameters", parameters_structure(its));
  fields.emplace_back("tags", tags_structure(its));
  call.give(structure(std::move(fields)));
}

void parameters(Call& call) {
  call.give(parameters_structure(found_in(call).component()));
}

/// The node that a path leads to; null where it leads to none.
const gl::core::Node* node_at(const Graph& graph, std::vector<std::string> names) {
  if (names.empty() || !kmf::VnId::isLegal(names.back())) return nullptr;
  const kmf::VnId id(names.back());
  names.pop_back();
  const auto& nodes = find_graph(graph, names).nodes();
  const auto found = nodes.find(id);
  return found == nodes.end() ? nullptr : &found->second;
}

void tags(Call& call) {
  const gl::core::Node* node = node_at(class_system::single<Graph>(call[0]), names_in(call[1]));
  call.give(node != nullptr ? tags_structure(*node) : tags_structure(found_in(call).component()));
}

}  // namespace

std::vector<class_system::MethodDefinition> graph_component_methods() {
  return {{"component",
           {"any"},
           {},
           "",
           {"s = g.component(path)", "What a component is.",
            "A structure: path (identifiers), block (the path of the block), type (empty for a subgraph), subgraph "
            "(logical), connectors (the type of each), parameters and tags, as the methods of these names give them."},
           component},
          {"parameters",
           {"any"},
           {},
           "",
           {"s = g.parameters(path)", "The parameters of a component.",
            "A structure with a field for each parameter, which is a structure again: value (numbers, told in unit; a "
            "text; or [] for an expression), unit, and expression (empty where the value is fixed). "
            "kinemo.gl.RuntimeParameterInfo.evaluate gives the value of an expression."},
           parameters},
          {"tags",
           {"any"},
           {},
           "",
           {"s = g.tags(path)", "The tags of a component or a node.",
            "A structure with a field for each tag. The tag that ties an entry to its block is the block's path."},
           tags}};
}

}  // namespace embedded::graph_core_scripting
