#include "common/gl/gti/src/kernel/parameters/name_collisions.hpp"

#include "common/gl/gti/src/kernel/translation/graph_access.hpp"
#include "platform/foundation/checked.hpp"

#include <map>
#include <utility>
#include <vector>

namespace gl::gti {

namespace {

using gl::core::Component;
using gl::core::ConnectorSpec;
using gl::core::Graph;

using ConnectorSpecRenames = std::map<ConnectorSpec, ConnectorSpec>;

constexpr std::size_t longestId = 64;
const kmf::VnIdPathIterator root;

IdSet idsOfLevel(const Graph& graph) {
  IdSet ids;
  for (const auto& entry : graph.components()) ids.insert(entry.first);
  for (const auto& entry : graph.nodes()) ids.insert(entry.first);
  return ids;
}

IdSet parameterIds(const Component& component) {
  IdSet ids;
  for (const auto& entry : component.parameters()) ids.insert(entry.first);
  return ids;
}

/// What a subgraph says about the names in it.
struct Scope {
  IdRenames connectors;
  IdSet reserved;  ///< for the graph inside: parameters, and connectors by their new names
};

Scope scopeOf(const Component& subgraph) {
  const IdSet own = parameterIds(subgraph);
  const std::vector<kmf::VnId>& order = subgraph.connectorOrder();
  Scope scope{id_renames(IdSet(order.begin(), order.end()), own), own};
  for (const auto& rename : scope.connectors) scope.reserved.insert(rename.second);
  return scope;
}

/// A subgraph around its rewritten inside.
Component rebuilt(const Component& old, const GraphIdRewrite& inner, const IdRenames& connectors) {
  Component made(inner.graph, old.parameters());
  for (const auto& entry : old.graph().nodes()) {
    const kmf::VnId& node = entry.first;
    if (!old.isExported(node)) continue;
    const kmf::VnId& newNode = kmf::boost_unordered_map_at(inner.renames, node);
    const kmf::VnId& exported = old.mapExported(node);
    const kmf::VnIdPath1& type = fetch<gl::core::Connector>(old, exported).type();
    made.exportNode(newNode, kmf::boost_unordered_map_at(connectors, exported), type);
  }
  for (const kmf::VnId& tag : old.tags()) made.tag(tag, old.tag(tag));
  return made;
}

/// Goes through a graph and all levels below it with a stack of its own, so that depth is no matter.
class Walk {
 public:
  GraphIdRewrite operator()(const Graph& graph, const IdSet& reserved) {
    levels_.push_back(levelOf(graph, reserved));
    for (;;) {
      Level& level = levels_.back();
      if (level.next != level.graph->components().end()) {
        const auto& [id, component] = *level.next++;
        component.isSubgraph() ? enter(id, component) : addLeaf(level, id, component);
        continue;
      }
      finish(level);
      Level done = std::move(level);
      levels_.pop_back();
      if (levels_.empty()) return std::move(done.rewrite);
      addSubgraph(levels_.back(), done);
    }
  }

 private:
  struct Level {
    const Graph* graph = nullptr;
    std::map<kmf::VnId, Component>::const_iterator next;
    GraphIdRewrite rewrite;
    ConnectorSpecRenames specs;
    // Of the subgraph around this level; null and empty where the walk begins.
    const Component* owner = nullptr;
    kmf::VnId ownerId;
    IdRenames connectors;
  };

  static Level levelOf(const Graph& graph, const IdSet& reserved) {
    Level level;
    level.graph = &graph;
    level.next = graph.components().begin();
    level.rewrite.renames = id_renames(idsOfLevel(graph), reserved);
    return level;
  }

  void enter(const kmf::VnId& id, const Component& subgraph) {
    Scope scope = scopeOf(subgraph);
    Level level = levelOf(fetch<Graph>(subgraph, root), scope.reserved);
    level.owner = &subgraph;
    level.ownerId = id;
    level.connectors = std::move(scope.connectors);
    levels_.push_back(std::move(level));
  }

  static void addLeaf(Level& level, const kmf::VnId& id, const Component& component) {
    const kmf::VnId& newId = kmf::boost_unordered_map_at(level.rewrite.renames, id);
    for (const kmf::VnId& connector : component.connectorOrder()) {
      level.specs.emplace(ConnectorSpec(id, connector), ConnectorSpec(newId, connector));
    }
    level.rewrite.graph.insert(newId, component);
  }

  static void addSubgraph(Level& level, const Level& inner) {
    const kmf::VnId& newId = kmf::boost_unordered_map_at(level.rewrite.renames, inner.ownerId);
    for (const auto& [connector, newConnector] : inner.connectors) {
      level.specs.emplace(ConnectorSpec(inner.ownerId, connector), ConnectorSpec(newId, newConnector));
    }
    level.rewrite.graph.insert(newId, rebuilt(*inner.owner, inner.rewrite, inner.connectors));
  }

  static void finish(Level& level) {
    GraphIdRewrite& rewrite = level.rewrite;
    for (const auto& [id, node] : level.graph->nodes()) {
      rewrite.graph.insert(kmf::boost_unordered_map_at(rewrite.renames, id), node);
    }
    for (const gl::core::Connection& connection : level.graph->connections(root)) {
      const gl::core::Connection renamed(kmf::boost_unordered_map_at(rewrite.renames, connection.nodeId()),
                                         kmf::map_at(level.specs, connection.connectorSpec()));
      rewrite.graph.insert(renamed, root);
    }
  }

  std::vector<Level> levels_;
};

}  // namespace

IdRenames id_renames(const IdSet& ids, const IdSet& reserved) {
  std::vector<kmf::VnId> avoid(reserved.begin(), reserved.end());
  std::vector<kmf::VnId> conflicts;
  IdRenames renames;
  for (const kmf::VnId& id : ids) {
    if (reserved.count(id) != 0) {
      conflicts.push_back(id);
    } else {
      avoid.push_back(id);
      renames.emplace(id, id);
    }
  }
  if (conflicts.empty()) return renames;
  const std::vector<kmf::VnId> fresh = kmf::VnId::unique(conflicts, avoid, longestId);
  for (std::size_t i = 0; i < conflicts.size(); ++i) renames.emplace(conflicts[i], fresh[i]);
  return renames;
}

GraphIdRewrite unique_graph_ids(Graph graph, const IdSet& reserved) {
  return Walk()(graph, reserved);
}

SubgraphIdRewrite unique_subgraph_ids(Component component) {
  Scope scope = scopeOf(component);
  const GraphIdRewrite inner = unique_graph_ids(fetch<Graph>(component, root), scope.reserved);
  Component made = rebuilt(component, inner, scope.connectors);
  return {std::move(made), std::move(scope.connectors)};
}

}  // namespace gl::gti
