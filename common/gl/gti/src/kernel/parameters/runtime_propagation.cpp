#include "common/gl/gti/src/kernel/parameters/runtime_propagation.hpp"

#include "common/gl/gti/src/kernel/parameters/name_collisions.hpp"
#include "common/gl/gti/src/kernel/translation/graph_access.hpp"

#include <map>
#include <utility>
#include <vector>

namespace gl::gti {

namespace {

using data2::core::Expr;
using gl::core::Component;
using gl::core::Graph;
using gl::core::Parameter;

const kmf::VnIdPathIterator root;

boost::optional<std::string> noUnit(const kmf::VnId&, const std::map<kmf::VnId, ParameterValue>&) {
  return boost::none;
}

/// Puts one set into another; the smaller one is walked, so that names on their way up many levels cost little.
void merge(IdSet& into, IdSet from) {
  if (into.size() < from.size()) into.swap(from);
  into.insert(from.begin(), from.end());
}

/// The names that are visible at the place of the walk. A subgraph adds its own on the way in and takes them back on
/// the way out; a copy of the sets for every subgraph would cost as much as all names times all subgraphs.
class VisibleNames {
 public:
  VisibleNames(const IdSet& runtimeIds, const IdSet& nonValueIds) : runtime_(runtimeIds), nonValue_(nonValueIds) {}

  const IdSet& runtime() const { return runtime_; }
  const IdSet& nonValue() const { return nonValue_; }

  struct Changes {
    std::vector<kmf::VnId> added;   ///< to the run-time names
    std::vector<kmf::VnId> hidden;  ///< from the non-value names
  };
  Changes enter(const Component& subgraph) {
    Changes changes;
    for (const auto& [id, parameter] : subgraph.parameters()) {
      if (boost::get<data2::core::Value>(&parameter.get(root)) == nullptr) continue;
      if (runtime_.insert(id).second) changes.added.push_back(id);
      if (nonValue_.erase(id) != 0) changes.hidden.push_back(id);
    }
    return changes;
  }
  void leave(const Changes& changes) {
    for (const kmf::VnId& id : changes.added) runtime_.erase(id);
    nonValue_.insert(changes.hidden.begin(), changes.hidden.end());
  }

 private:
  IdSet runtime_;
  IdSet nonValue_;
};

/// The components of a level that come out of it changed, in the order of their ids.
using Changes = std::vector<std::pair<kmf::VnId, Component>>;

/// A graph with changed leaves. All but their parameters stays shared with the old graph or is copied as a whole.
Graph withParameters(const Graph& old, const Changes& leaves) {
  Component around(old, {});
  for (const auto& [id, leaf] : leaves) {
    const std::map<kmf::VnId, Parameter>& before = old.components().at(id).parameters();
    for (const auto& [parameter, held] : leaf.parameters()) {
      // It is there: a block has nothing but `Component::set` on its leaf, which refuses names that the leaf lacks.
      if (held == before.at(parameter)) continue;
      around.set(kmf::VnIdPath(std::vector<kmf::VnId>{id, parameter}), held.get(root));
    }
  }
  return around.graph();
}

/// A graph with changed components of any kind, built anew.
Graph withComponents(const Graph& old, const Changes& changes) {
  Graph made;
  auto change = changes.begin();
  for (const auto& [id, component] : old.components()) {
    const bool changed = change != changes.end() && change->first == id;
    made.insert(id, changed ? (change++)->second : component);
  }
  for (const auto& [id, node] : old.nodes()) made.insert(id, node);
  for (const gl::core::Connection& connection : old.connections(root)) made.insert(connection, root);
  return made;
}

/// A single pass over a graph and all levels below it, with a stack of its own, so that depth is no matter.
class Walk {
 public:
  Walk(const BlockEntryMap& entries, const IdSet& runtimeIds, const IdSet& nonValueIds, bool warn)
      : entries_(entries), names_(runtimeIds, nonValueIds), warn_(warn) {}

  GraphRewrite graph(const Graph& graph) {
    Level level;
    level.graph = &graph;
    level.next = graph.components().begin();
    Level done = run(std::move(level));
    return {done.rewritten(), std::move(done.used)};
  }

  ComponentRewrite subgraph(const Component& subgraph) {
    Level done = run(levelIn(kmf::VnId(), subgraph));
    return rebuilt(done);
  }

 private:
  struct Level {
    const Graph* graph = nullptr;
    std::map<kmf::VnId, Component>::const_iterator next;
    Changes changed;
    bool changesSubgraphs = false;
    IdSet used;  ///< inside
    // Of the subgraph around this level; null and empty where the walk begins with a graph.
    const Component* owner = nullptr;
    kmf::VnId ownerId;
    ParameterRewrites masks;  ///< of its parameters, over the names outside
    VisibleNames::Changes names;

    Graph rewritten() const {
      if (changed.empty()) return *graph;
      return changesSubgraphs ? withComponents(*graph, changed) : withParameters(*graph, changed);
    }
  };

  Level run(Level first) {
    levels_.push_back(std::move(first));
    for (;;) {
      Level& level = levels_.back();
      if (level.next != level.graph->components().end()) {
        step(level);
        continue;
      }
      Level done = std::move(level);
      levels_.pop_back();
      if (levels_.empty()) return done;
      addSubgraph(levels_.back(), done);
    }
  }

  void step(Level& level) {
    const auto& [id, component] = *level.next++;
    if (component.isSubgraph()) {
      levels_.push_back(levelIn(id, component));
    } else {
      addLeaf(level, id, component);
    }
  }

  Level levelIn(const kmf::VnId& id, const Component& subgraph) {
    Level level;
    level.graph = &fetch<Graph>(subgraph, root);
    level.next = level.graph->components().begin();
    level.owner = &subgraph;
    level.ownerId = id;
    level.masks = parameter_rewrites(subgraph, entries_, names_.runtime(), names_.nonValue(), noUnit);
    level.names = names_.enter(subgraph);
    return level;
  }

  void addLeaf(Level& level, const kmf::VnId& id, const Component& leaf) {
    ComponentRewrite rewrite = propagate_component(leaf, entries_, names_.runtime(), names_.nonValue(), warn_);
    // A component that was written has a set of parameters of its own.
    if (&rewrite.component.parameters() != &leaf.parameters())
      level.changed.emplace_back(id, std::move(rewrite.component));
    merge(level.used, std::move(rewrite.used));
  }

  void addSubgraph(Level& level, Level& inner) {
    ComponentRewrite rewrite = rebuilt(inner);
    if (&rewrite.component.parameters() != &inner.owner->parameters() || !inner.changed.empty()) {
      level.changed.emplace_back(inner.ownerId, std::move(rewrite.component));
      level.changesSubgraphs = true;
    }
    merge(level.used, std::move(rewrite.used));
  }

  /// The subgraph around a finished level, seen from outside again.
  ComponentRewrite rebuilt(Level& inner) {
    names_.leave(inner.names);
    const std::map<kmf::VnId, Parameter> kept = keptParameters(inner);
    const bool stays = inner.changed.empty() && kept == inner.owner->parameters();
    Component made = stays ? *inner.owner : around(inner, kept);

    IdSet used = std::move(inner.used);
    for (const auto& entry : kept) used.erase(entry.first);
    merge(used, used_runtime_ids(made, names_.runtime()));
    return {std::move(made), std::move(used)};
  }

  static Component around(const Level& inner, const std::map<kmf::VnId, Parameter>& parameters) {
    Component made(inner.rewritten(), parameters);
    copyExports(*inner.owner, made);
    for (const kmf::VnId& tag : inner.owner->tags()) made.tag(tag, inner.owner->tag(tag));
    return made;
  }

  /// Those that an expression inside uses, as expressions over the names outside where that is allowed.
  std::map<kmf::VnId, Parameter> keptParameters(const Level& inner) const {
    std::map<kmf::VnId, Parameter> kept;
    for (const auto& [id, parameter] : inner.owner->parameters()) {
      if (inner.used.count(id) == 0) continue;
      const auto mask = inner.masks.find(id);
      const bool changes = mask != inner.masks.end() && mayUse(*inner.owner, id, mask->second);
      kept.emplace(id, changes ? Parameter(mask->second) : parameter);
    }
    return kept;
  }

  bool mayUse(const Component& subgraph, const kmf::VnId& parameter, const Expr& expression) const {
    const boost::optional<kmf::VnId> offender = non_value_reference(expression, names_.nonValue());
    if (!offender) return true;
    if (warn_) {
      warn_of_non_value_reference("InvalidNonValueReferenceMask", subgraph, std::string(parameter), *offender);
    }
    return false;
  }

  static void copyExports(const Component& from, Component& to) {
    const Graph graph = to.graph();
    for (const auto& entry : graph.nodes()) {
      const kmf::VnId& node = entry.first;
      if (!from.isExported(node)) continue;
      const kmf::VnId& exported = from.mapExported(node);
      to.exportNode(node, exported, fetch<gl::core::Connector>(from, exported).type());
    }
  }

  const BlockEntryMap& entries_;
  VisibleNames names_;
  bool warn_;
  std::vector<Level> levels_;
};

}  // namespace

PropagationResult propagate_runtime_parameters(const Graph& graph, const BlockEntryMap& entries,
                                               const gl::core::RuntimeParameterInfo& info, bool warn) {
  const std::set<kmf::VnId> runtime = info.runtimeParameters();
  const std::set<kmf::VnId>& nonValue = info.nonValueParameters();
  const GraphRewrite rewrite = propagate_graph(graph, entries, IdSet(runtime.begin(), runtime.end()),
                                               IdSet(nonValue.begin(), nonValue.end()), warn);
  PropagationResult result;
  result.graph = without_collisions(rewrite.graph, rewrite.used);
  for (const kmf::VnId& name : runtime) {
    if (rewrite.used.count(name) != 0) result.info.addParameter(name, info.value(name));
  }
  return result;
}

GraphRewrite propagate_graph(const Graph& graph, const BlockEntryMap& entries, const IdSet& runtimeIds,
                             const IdSet& nonValueIds, bool warn) {
  return Walk(entries, runtimeIds, nonValueIds, warn).graph(graph);
}

ComponentRewrite propagate_subgraph(Component component, const BlockEntryMap& entries, const IdSet& runtimeIds,
                                    const IdSet& nonValueIds, bool warn) {
  return Walk(entries, runtimeIds, nonValueIds, warn).subgraph(component);
}

}  // namespace gl::gti
