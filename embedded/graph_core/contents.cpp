#include "embedded/graph_core/contents.hpp"

#include <utility>

namespace gl::core::detail {

const Connection* ConnectorIndex::find(const ConnectorSpec& connector) const {
  return index_.find(hash_value(connector), [&](const Connection* at) { return at->connectorSpec() == connector; });
}

void ConnectorIndex::insert(const Connection& connection) {
  index_.insert(&connection, [](const Connection* at) { return hash_value(at->connectorSpec()); });
}

GraphData::GraphData(const GraphData& other)
    : components(other.components), nodes(other.nodes), connections(other.connections) {
  for (const Connection& connection : connections) byConnector.insert(connection);
}

void GraphData::append(const Connection& connection) {
  byConnector.insert(*connections.emplace_hint(connections.end(), connection));
}

std::uint32_t SubgraphData::exportOf(const kmf::VnId& node) const {
  return byNode.find(hash_value(node), [&](std::uint32_t at) { return exportedNodes[at] == node; });
}

void SubgraphData::append(const kmf::VnId& node) {
  exportedNodes.push_back(node);
  byNode.insert(static_cast<std::uint32_t>(exportedNodes.size() - 1),
                [this](std::uint32_t at) { return hash_value(exportedNodes[at]); });
}

ComponentData::ComponentData(const ComponentData& other)
    : shape(other.shape),
      parameters(other.parameters),
      tags(other.tags),
      subgraph(other.subgraph ? std::make_unique<SubgraphData>(*other.subgraph) : nullptr) {}

const GraphData& Access::of(const Graph& graph) {
  static const GraphData& empty = *new GraphData;  // outlives every static graph
  return graph.data_ ? *graph.data_ : empty;
}

const ComponentData& Access::of(const Component& component) {
  static const ComponentData& empty = *new ComponentData;
  return component.data_ ? *component.data_ : empty;
}

const ParameterMap& parameters_of(const ComponentData& component) {
  static const ParameterMap& none = *new ParameterMap;
  return component.parameters ? *component.parameters : none;
}

ParameterMap& write_parameters(ComponentData& component) {
  if (!component.parameters) {
    component.parameters = std::make_shared<ParameterMap>();
  } else if (component.parameters.use_count() != 1) {
    component.parameters = std::make_shared<ParameterMap>(*component.parameters);
  }
  return *component.parameters;
}

void dismantle(std::shared_ptr<GraphData> graph) noexcept {
  while (graph) {
    const std::shared_ptr<GraphData> level = std::move(graph);
    graph = std::move(level->nextToEnd);
    for (auto& entry : level->components) {
      // One at a time: the same component or graph may stand here under several ids, and ends with the last of them.
      const std::shared_ptr<ComponentData> component = std::move(Access::pointer(entry.second));
      if (component.use_count() != 1 || !component->subgraph) continue;
      std::shared_ptr<GraphData>& inner = Access::pointer(component->subgraph->graph);
      if (inner.use_count() != 1) continue;
      inner->nextToEnd = std::move(graph);
      graph = std::move(inner);
    }
  }
}

}  // namespace gl::core::detail
