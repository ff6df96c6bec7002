#include "views/model_json.hpp"

#include "views/graph_access.hpp"
#include "views/graph_walk.hpp"
#include "views/json_writer.hpp"
#include "views/parameter_text.hpp"

#include <ostream>

namespace kinemo::views {

namespace {

class GraphWriter {
 public:
  explicit GraphWriter(JsonWriter& json) : json_(json) {}

  void enter(const GraphLevel&) { json_.begin_object().key("components").begin_object(); }

  void leave(const GraphLevel& level) {
    json_.end_object();
    write_nodes(*level.graph);
    write_connections(*level.graph);
    json_.end_object();
    if (level.owner == nullptr) return;
    write_exports(*level.owner);
    json_.end_object();
  }

  void component(const GraphLevel&, const kmf::VnId& id, const gl::core::Component& component) {
    json_.key(id.view()).begin_object();
    json_.member("object", object_text(component)).member("type", std::string(component.type()));
    json_.key("parameters").begin_object();
    for (const auto& [name, parameter] : component.parameters()) {
      json_.key(name.view());
      write_parameter(json_, parameter.get(kmf::VnIdPathIterator()));
    }
    json_.end_object().key("connectors").begin_object(true);
    for (const kmf::VnId& connector : component.connectorOrder()) {
      json_.member(connector.view(), connector_type(component, connector));
    }
    json_.end_object();
    if (component.isSubgraph()) {
      json_.key("graph");
    } else {
      json_.end_object();
    }
  }

 private:
  void write_nodes(const gl::core::Graph& graph) {
    json_.key("nodes").begin_object();
    for (const auto& [id, node] : graph.nodes()) {
      json_.key(id.view()).begin_object(true).member("object", object_text(node)).end_object();
    }
    json_.end_object();
  }

  void write_connections(const gl::core::Graph& graph) {
    json_.key("connections").begin_array();
    for (const gl::core::Connection& connection : connections(graph)) {
      const gl::core::ConnectorSpec& connector = connection.connectorSpec();
      json_.begin_array(true).value(connection.nodeId().view()).value(connector.componentId().view());
      json_.value(connector.connectorId().view()).end_array();
    }
    json_.end_array();
  }

  void write_exports(const gl::core::Component& component) {
    json_.key("exports").begin_object();
    for (const auto& entry : component.graph().nodes()) {
      if (component.isExported(entry.first)) {
        json_.member(entry.first.view(), component.mapExported(entry.first).view());
      }
    }
    json_.end_object();
  }

  JsonWriter& json_;
};

void write_runtime_parameters(JsonWriter& json, const gl::core::RuntimeParameterInfo& parameters) {
  json.begin_object();
  for (const kmf::VnId& id : parameters.runtimeParameters()) {
    json.key(id.view());
    if (parameters.nonValueParameters().count(id) != 0) {
      json.begin_object(true).end_object();
    } else {
      write_value(json, parameters.value(id));
    }
  }
  json.end_object();
}

}  // namespace

void write_model_json(std::ostream& out, const std::string& name, const std::string& domain,
                      const gl::core::Model& model) {
  JsonWriter json(out);
  json.begin_object().member("schema", std::size_t{1}).member("model", name).member("domain", domain).key("graph");
  GraphWriter writer(json);
  walk_graphs(model.graph(), writer);
  json.key("runtimeParameters");
  write_runtime_parameters(json, model.runtimeParameters());
  json.end_object().finish();
}

}  // namespace kinemo::views
