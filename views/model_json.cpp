#include "views/model_json.hpp"

#include "views/graph_access.hpp"
#include "views/json_writer.hpp"
#include "views/parameter_text.hpp"

#include <ostream>
#include <vector>

namespace kinemo::views {

namespace {

/// Writes nested graphs with a stack of its own, so that depth is no matter.
class GraphWriter {
 public:
  explicit GraphWriter(JsonWriter& json) : json_(json) {}

  void write(const gl::core::Graph& root) {
    enter(root, nullptr);
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.next == level.graph->components().end()) {
        leave();
      } else {
        const auto current = level.next++;
        write_component(current->first, current->second);
      }
    }
  }

 private:
  struct Level {
    const gl::core::Graph* graph;
    const gl::core::Component* owner;  ///< null at the root
    std::map<kmf::VnId, gl::core::Component>::const_iterator next;
  };

  void enter(const gl::core::Graph& graph, const gl::core::Component* owner) {
    levels_.push_back({&graph, owner, graph.components().begin()});
    json_.begin_object().key("components").begin_object();
  }

  void leave() {
    const Level level = levels_.back();
    levels_.pop_back();
    json_.end_object();
    write_nodes(*level.graph);
    write_connections(*level.graph);
    json_.end_object();
    if (level.owner == nullptr) return;
    write_exports(*level.owner);
    json_.end_object();
  }

  void write_component(const kmf::VnId& id, const gl::core::Component& component) {
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
    if (!component.isSubgraph()) {
      json_.end_object();
      return;
    }
    json_.key("graph");
    enter(component.graph(), &component);
  }

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
  std::vector<Level> levels_;
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
  GraphWriter(json).write(model.graph());
  json.key("runtimeParameters");
  write_runtime_parameters(json, model.runtimeParameters());
  json.end_object().finish();
}

}  // namespace kinemo::views
