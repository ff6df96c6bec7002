#include "common/gl/gti/src/kernel/parameters/name_collisions.hpp"

#include "common/gl/gti/src/kernel/translation/graph_access.hpp"
#include "platform/foundation/checked.hpp"

#include <boost/optional.hpp>

#include <algorithm>
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

template <class Ids>
bool anyReserved(const Graph& graph, const Ids& reserved) {
  return std::any_of(reserved.begin(), reserved.end(), [&](const kmf::VnId& id) {
    return graph.components().count(id) != 0 || graph.nodes().count(id) != 0;
  });
}

/// What a subgraph says about the names in it.
struct Scope {
  IdRenames connectors;
  IdSet reserved;        ///< for the graph inside: parameters, and connectors by their new names
  bool renames = false;  ///< whether a connector gets another name
};

Scope scopeOf(const Component& subgraph) {
  Scope scope;
  scope.reserved = parameterIds(subgraph);
  const std::vector<kmf::VnId>& order = subgraph.connectorOrder();
  scope.renames = std::any_of(order.begin(), order.end(),
                              [&](const kmf::VnId& connector) { return scope.reserved.count(connector) != 0; });
  scope.connectors = id_renames(IdSet(order.begin(), order.end()), scope.reserved);
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

/// One level of the walk. It stays what it is, shared, unless a name of it collides or a subgraph in it changes.
struct Level {
  struct Changed {
    Component component;
    IdRenames connectors;
  };

  Level(const Graph& inside, const IdSet& reservedIds)
      : graph(&inside), next(inside.components().begin()), collides(anyReserved(inside, reservedIds)) {
    if (collides) reserved = reservedIds;
  }

  const Graph* graph;
  std::map<kmf::VnId, Component>::const_iterator next;
  bool collides;
  IdSet reserved;                        ///< where it collides
  std::map<kmf::VnId, Changed> changed;  ///< subgraphs, by their old names
  // Of the subgraph around this level; null and empty where the walk begins.
  const Component* owner = nullptr;
  kmf::VnId ownerId;
  Scope scope;
};

/// The new graph of a level that doesn't stay.
class Rebuild {
 public:
  explicit Rebuild(const Level& level) : level_(level) {
    rewrite_.renames = id_renames(idsOfLevel(*level.graph), level.reserved);
  }

  GraphIdRewrite operator()() && {
    for (const auto& [id, component] : level_.graph->components()) add(id, component);
    for (const auto& [id, node] : level_.graph->nodes()) rewrite_.graph.insert(renamed(id), node);
    for (const gl::core::Connection& connection : level_.graph->connections(root)) {
      const gl::core::Connection made(renamed(connection.nodeId()), kmf::map_at(specs_, connection.connectorSpec()));
      rewrite_.graph.insert(made, root);
    }
    return std::move(rewrite_);
  }

 private:
  const kmf::VnId& renamed(const kmf::VnId& id) const { return kmf::boost_unordered_map_at(rewrite_.renames, id); }

  void add(const kmf::VnId& id, const Component& component) {
    const kmf::VnId& newId = renamed(id);
    const auto changed = level_.changed.find(id);
    const bool isChanged = changed != level_.changed.end();
    for (const kmf::VnId& connector : component.connectorOrder()) {
      const kmf::VnId& newName =
          isChanged ? kmf::boost_unordered_map_at(changed->second.connectors, connector) : connector;
      specs_.emplace(ConnectorSpec(id, connector), ConnectorSpec(newId, newName));
    }
    rewrite_.graph.insert(newId, isChanged ? changed->second.component : component);
  }

  const Level& level_;
  GraphIdRewrite rewrite_;
  ConnectorSpecRenames specs_;
};

/// Goes through a graph and all levels below it with a stack of its own, so that depth is no matter.
class Walk {
 public:
  /// None when the graph stays as it is.
  boost::optional<GraphIdRewrite> operator()(const Graph& graph, const IdSet& reserved) {
    levels_.emplace_back(graph, reserved);
    for (;;) {
      Level& level = levels_.back();
      if (level.next != level.graph->components().end()) {
        const auto& [id, component] = *level.next++;
        if (component.isSubgraph()) enter(id, component);
        continue;
      }
      const Level done = std::move(level);
      levels_.pop_back();
      if (levels_.empty()) return stays(done) ? boost::none : boost::make_optional(Rebuild(done)());
      leave(done);
    }
  }

 private:
  static bool stays(const Level& level) { return !level.collides && level.changed.empty(); }

  void enter(const kmf::VnId& id, const Component& subgraph) {
    Scope scope = scopeOf(subgraph);
    levels_.emplace_back(fetch<Graph>(subgraph, root), scope.reserved);
    levels_.back().owner = &subgraph;
    levels_.back().ownerId = id;
    levels_.back().scope = std::move(scope);
  }

  /// Tells the level around a subgraph how it comes out.
  void leave(const Level& inner) {
    if (stays(inner) && !inner.scope.renames) return;
    Component made = rebuilt(*inner.owner, Rebuild(inner)(), inner.scope.connectors);
    levels_.back().changed.emplace(inner.ownerId, Level::Changed{std::move(made), inner.scope.connectors});
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
  if (boost::optional<GraphIdRewrite> rewrite = Walk()(graph, reserved)) return *std::move(rewrite);
  return {graph, id_renames(idsOfLevel(graph), {})};
}

Graph without_collisions(const Graph& graph, const IdSet& reserved) {
  const boost::optional<GraphIdRewrite> rewrite = Walk()(graph, reserved);
  return rewrite ? rewrite->graph : graph;
}

SubgraphIdRewrite unique_subgraph_ids(Component component) {
  Scope scope = scopeOf(component);
  const GraphIdRewrite inner = unique_graph_ids(fetch<Graph>(component, root), scope.reserved);
  Component made = rebuilt(component, inner, scope.connectors);
  return {std::move(made), std::move(scope.connectors)};
}

}  // namespace gl::gti
