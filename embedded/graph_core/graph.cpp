#include "embedded/graph_core/contents.hpp"
#include "embedded/graph_core/errors.hpp"
#include "embedded/graph_core/resolve.hpp"

#include <utility>

namespace gl::core {

namespace {

/// The address less its last id.
kmf::VnIdPath enclosing(const kmf::VnIdPathIterator& at) {
  kmf::VnIdPath path = at.rest();
  path.chop(path.end() - 1);
  return path;
}

/// The graph that an address leads to, for writing: whatever is shared on the way is copied. The address was looked up
/// before.
Graph& writable(Graph& graph, kmf::VnIdPathIterator at, std::size_t levels) {
  Graph* level = &graph;
  for (; levels > 0; --levels, ++at) {
    Component& component = detail::Access::write(*level).components.find(*at)->second;
    level = &detail::Access::write(component).subgraph->graph;
  }
  return *level;
}

template <class Entry>
bool is_at(const std::map<kmf::VnId, Entry>& entries, typename std::map<kmf::VnId, Entry>::const_iterator place,
           const kmf::VnId& id) {
  return place != entries.end() && place->first == id;
}

/// @throws as `Graph::insert` for a connection. False when the connection is there already.
bool is_new(const detail::GraphData& graph, const Connection& connection) {
  const ConnectorSpec& connector = connection.connectorSpec();
  if (graph.nodes.count(connection.nodeId()) == 0) detail::throw_entry_name_not_found(connection.nodeId());
  const auto component = graph.components.find(connector.componentId());
  if (component == graph.components.end()) detail::throw_entry_name_not_found(connector.path());
  const detail::ComponentData& data = detail::Access::of(component->second);
  if (detail::shape_of(data.shape).find(connector.connectorId()) == nullptr) {
    detail::throw_entry_name_not_found(connector.path());
  }
  const Connection* held = graph.byConnector.find(connector);
  if (held == nullptr) return true;
  if (held->nodeId() != connection.nodeId()) detail::throw_already_connected(connector, held->nodeId());
  return false;
}

/// The connections of a node of this level. O(log n) and their number.
std::set<Connection> connections_of(const detail::GraphData& graph, const kmf::VnId& node) {
  const Connection first(node, ConnectorSpec(kmf::VnId(), kmf::VnId()));
  auto end = graph.connections.lower_bound(first);
  const auto begin = end;
  while (end != graph.connections.end() && end->nodeId() == node) ++end;
  return std::set<Connection>(begin, end);
}

template <class T>
bool leads_to(const Graph& graph, const kmf::VnIdPathIterator& at) {
  const auto result = detail::resolve(graph, at, detail::GraphIdTypePredicate<T>());
  return boost::get<GraphEntryRef>(&result) != nullptr;
}

/// The graph that holds the node at an address. @throws "EntryNameNotFound", "EntryTypeMismatch"
const detail::GraphData& level_of_node(const Graph& graph, const kmf::VnIdPathIterator& node) {
  detail::found_or_throw(detail::resolve(graph, node, detail::GraphIdTypePredicate<Node>()), node);
  return detail::Access::of(detail::resolved<Graph>(graph, enclosing(node)));
}

}  // namespace

Graph::Graph() = default;
Graph::Graph(const Graph&) noexcept = default;
Graph::Graph(Graph&&) noexcept = default;

Graph& Graph::operator=(Graph other) noexcept {
  data_.swap(other.data_);
  return *this;
}

Graph::~Graph() {
  if (data_.use_count() == 1) detail::dismantle(std::move(data_));
}

detail::GraphData& Graph::write() {
  if (!data_) {
    data_ = std::make_shared<detail::GraphData>();
  } else if (data_.use_count() != 1) {
    data_ = std::make_shared<detail::GraphData>(*data_);
  }
  data_->ofNodes.reset();
  return *data_;
}

void Graph::insert(const kmf::VnIdPathIterator& at, const GraphEntry& entry) {
  if (at.atEnd()) detail::throw_entry_name_not_found(at);
  const std::size_t levels = at.remaining() - 1;
  kmf::VnIdPathIterator last = at;
  for (std::size_t i = 0; i < levels; ++i) ++last;
  const Graph& target = levels == 0 ? *this : detail::resolved<Graph>(*this, enclosing(at));
  const kmf::VnId id = *last;
  auto component = target.components().lower_bound(id);
  auto node = target.nodes().lower_bound(id);
  if (is_at(target.components(), component, id) || is_at(target.nodes(), node, id)) detail::throw_duplicate_entry(id);
  const detail::GraphData* before = &detail::Access::of(target);
  detail::GraphData& graph = writable(*this, at, levels).write();
  if (&graph != before) {  // it was shared
    component = graph.components.lower_bound(id);
    node = graph.nodes.lower_bound(id);
  }
  if (const Component* inserted = boost::get<Component>(&entry)) {
    graph.components.emplace_hint(component, id, *inserted);
  } else {
    graph.nodes.emplace_hint(node, id, boost::get<Node>(entry));
  }
}

void Graph::insert(const kmf::VnId& nodeId, const ConnectorSpec& connector, const kmf::VnIdPathIterator& at) {
  insert(Connection(nodeId, connector), at);
}

void Graph::insert(const Connection& connection, const kmf::VnIdPathIterator& at) {
  if (!is_new(detail::Access::of(detail::resolved<Graph>(*this, at)), connection)) return;
  detail::GraphData& graph = writable(*this, at, at.remaining()).write();
  graph.byConnector.insert(*graph.connections.insert(connection).first);
}

std::set<Connection> Graph::incident(const kmf::VnIdPathIterator& connector) const {
  const kmf::VnIdPath path = connector.rest();
  if (path.size() >= 2 && leads_to<Connector>(*this, connector)) {
    kmf::VnIdPath level = path;
    level.chop(level.end() - 2);
    const ConnectorSpec spec(path[path.size() - 2], path.back());
    const Connection* held = detail::Access::of(detail::resolved<Graph>(*this, level)).byConnector.find(spec);
    return held == nullptr ? std::set<Connection>() : std::set<Connection>{*held};
  }
  return connections_of(level_of_node(*this, connector), path.back());
}

const std::set<Connection>& Graph::connections(const kmf::VnIdPathIterator& at) const {
  if (at.atEnd()) return detail::Access::of(*this).connections;
  if (leads_to<Graph>(*this, at)) return detail::Access::of(detail::resolved<Graph>(*this, at)).connections;
  const detail::GraphData& level = level_of_node(*this, at);
  const kmf::VnId node = at.rest().back();
  if (!level.ofNodes) level.ofNodes = std::make_unique<std::map<kmf::VnId, std::set<Connection>>>();
  const auto known = level.ofNodes->find(node);
  if (known != level.ofNodes->end()) return known->second;
  return level.ofNodes->emplace(node, connections_of(level, node)).first->second;
}

const kmf::VnId* Graph::nodeOf(const ConnectorSpec& connector) const {
  const Connection* held = detail::Access::of(*this).byConnector.find(connector);
  return held == nullptr ? nullptr : &held->nodeId();
}

detail::FindResult Graph::findEntry(const kmf::VnIdPathIterator& at,
                                    const detail::IdPredicate<GraphEntryRef>& predicate) const {
  return detail::resolve(*this, at, predicate);
}

const std::map<kmf::VnId, Component>& Graph::components() const {
  return detail::Access::of(*this).components;
}

const std::map<kmf::VnId, Node>& Graph::nodes() const {
  return detail::Access::of(*this).nodes;
}

}  // namespace gl::core
