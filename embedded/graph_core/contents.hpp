#pragma once

// What the handles of the interface point to. Contents are shared by all copies of a value and are written only while
// one handle holds them; a null pointer stands for an empty value, so that empty graphs and components cost nothing.

#include "embedded/graph_core/flat_index.hpp"
#include "embedded/graph_core/shape.hpp"
#include "embedded/graph_core/tags.hpp"
#include "platform/graph_core/graph.hpp"

#include <map>
#include <memory>
#include <set>
#include <vector>

namespace gl::core::detail {

using ParameterMap = std::map<kmf::VnId, Parameter>;

/// Finds connections by their connector.
class ConnectorIndex {
 public:
  /// Null when the connector is tied to no node.
  const Connection* find(const ConnectorSpec& connector) const;
  void insert(const Connection& connection);  ///< kept by address

 private:
  FlatIndex<const Connection*, nullptr> index_;
};

struct GraphData {
  GraphData() = default;
  GraphData(const GraphData& other);
  GraphData& operator=(const GraphData&) = delete;

  /// Adds a connection that sorts behind all others.
  void append(const Connection& connection);

  std::map<kmf::VnId, Component> components;
  std::map<kmf::VnId, Node> nodes;
  std::set<Connection> connections;
  ConnectorIndex byConnector;
  /// Answers about single nodes, kept because they are lent to the caller. Dropped when the graph is written.
  mutable std::unique_ptr<std::map<kmf::VnId, std::set<Connection>>> ofNodes;
  std::shared_ptr<GraphData> nextToEnd;  ///< the chain of `dismantle`; null in a graph that is in use
};

/// The inside of a subgraph component. Connectors and exported nodes run in parallel, in the order of export.
struct SubgraphData {
  static constexpr std::uint32_t npos = Shape::npos;

  /// The place of a node among the exports; npos when it isn't exported.
  std::uint32_t exportOf(const kmf::VnId& node) const;
  void append(const kmf::VnId& node);

  Graph graph;
  std::vector<kmf::VnId> exportedNodes;
  FlatIndex<std::uint32_t, npos> byNode;
};

struct ComponentData {
  ComponentData() = default;
  ComponentData(const ComponentData& other);
  ComponentData& operator=(const ComponentData&) = delete;

  ShapePtr shape;
  std::shared_ptr<ParameterMap> parameters;
  Tags tags;
  std::unique_ptr<SubgraphData> subgraph;  ///< null for a leaf
};

/// The one way from handles to contents outside the handles' own operations.
struct Access {
  static const GraphData& of(const Graph& graph);
  static const ComponentData& of(const Component& component);
  static std::shared_ptr<GraphData>& pointer(Graph& graph) { return graph.data_; }
  static std::shared_ptr<ComponentData>& pointer(Component& component) { return component.data_; }
  static GraphData& write(Graph& graph) { return graph.write(); }
  static ComponentData& write(Component& component) { return component.write(); }
};

/// The parameters, never null.
const ParameterMap& parameters_of(const ComponentData& component);
ParameterMap& write_parameters(ComponentData& component);

/// Ends the contents of a graph that nobody else holds, level by level, so that the nesting costs no stack.
void dismantle(std::shared_ptr<GraphData> graph) noexcept;

}  // namespace gl::core::detail
