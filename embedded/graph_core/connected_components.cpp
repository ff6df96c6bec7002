// The split of a graph into its connected pieces, through all levels of nesting and without recursion.
//
// Every occurrence of a graph in the hierarchy is a level. Its nodes and its leaf components are numbered members of
// one disjoint set over the whole hierarchy. A connection of a leaf unites the leaf and the node; one of a subgraph
// unites the node and the inner node that is exported as the connector. Then the pieces of each level are put together
// from the inside out. A level that lies in one piece as a whole is taken over as it is, shared with the input.

#include "embedded/graph_core/contents.hpp"
#include "embedded/graph_core/disjoint_set.hpp"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace gl::core {

namespace detail {

namespace {

using Member = DisjointSet::Member;
using PieceId = std::uint32_t;
constexpr PieceId no_piece = ~PieceId{0};

/// An inner node that is joined to a member of the level around it.
struct Join {
  kmf::VnId innerNode;
  Member outer;
};

struct Level {
  explicit Level(const GraphData& contents) : graph(&contents) {}

  const GraphData* graph;
  std::vector<Join> joins;         ///< used up when the level is numbered
  Member firstNode = 0;            ///< nodes are numbered in their order
  Member firstLeaf = 0;            ///< then leaf components in theirs
  bool placeholder = false;        ///< an inner level that holds nothing has one member, that stands for the subgraph
  std::vector<std::size_t> inner;  ///< the levels of the subgraphs, in the order of their components
  PieceId whole = no_piece;        ///< the piece of a level that isn't split
  std::vector<std::pair<PieceId, std::shared_ptr<GraphData>>>
      parts;  ///< of a split level, until the level around it took them
};

/// The nodes and connections of a graph in step: `visit(connection, position of its node)`.
template <class Visit>
void for_each_connection(const GraphData& graph, const Visit& visit) {
  auto node = graph.nodes.begin();
  Member position = 0;
  for (const Connection& connection : graph.connections) {
    for (; node->first != connection.nodeId(); ++node) ++position;
    visit(connection, position);
  }
}

/// Numbers the hierarchy and unites what is connected.
class Numbering {
 public:
  explicit Numbering(const Graph& root) {
    levels_.emplace_back(Access::of(root));
    for (std::size_t at = 0; at < levels_.size(); ++at) number(at);
  }

  std::vector<Level>& levels() { return levels_; }
  DisjointSet& members() { return members_; }

 private:
  /// What an id of the level at work stands for: a number, or the place of a subgraph's level.
  struct Entry {
    bool subgraph;
    std::size_t number;
  };

  void number(std::size_t at) {
    entries_ = {};  // clearing would cost as much as the largest level so far
    const GraphData& graph = *levels_[at].graph;
    entries_.reserve(graph.nodes.size() + graph.components.size());
    number_nodes(levels_[at], graph);
    number_components(at, graph);
    for (const Join& join : levels_[at].joins) {
      members_.unite(join.outer, static_cast<Member>(entries_.at(join.innerNode).number));
    }
    levels_[at].joins = {};
    const Member firstNode = levels_[at].firstNode;
    for_each_connection(graph, [&](const Connection& connection, Member position) {
      connect(graph, connection.connectorSpec(), firstNode + position);
    });
  }

  void number_nodes(Level& level, const GraphData& graph) {
    Member next = level.firstNode = members_.add(graph.nodes.size());
    for (const auto& node : graph.nodes) entries_.emplace(node.first, Entry{false, next++});
  }

  void number_components(std::size_t at, const GraphData& graph) {
    levels_[at].firstLeaf = static_cast<Member>(members_.size());
    for (const auto& component : graph.components) {
      if (component.second.isSubgraph()) {
        entries_.emplace(component.first, Entry{true, levels_.size()});
        levels_[at].inner.push_back(levels_.size());
        levels_.emplace_back(Access::of(component.second.graph()));
      } else {
        entries_.emplace(component.first, Entry{false, members_.add(1)});
      }
    }
    levels_[at].placeholder = at > 0 && graph.components.empty() && graph.nodes.empty();
    if (levels_[at].placeholder) members_.add(1);
  }

  void connect(const GraphData& graph, const ConnectorSpec& connector, Member node) {
    const Entry& entry = entries_.at(connector.componentId());
    if (!entry.subgraph) {
      members_.unite(node, static_cast<Member>(entry.number));
      return;
    }
    const ComponentData& component = Access::of(graph.components.find(connector.componentId())->second);
    const kmf::VnId& inner = component.subgraph->exportedNodes[component.shape->index(connector.connectorId())];
    levels_[entry.number].joins.push_back({inner, node});
  }

  std::vector<Level> levels_;
  DisjointSet members_;
  std::unordered_map<kmf::VnId, Entry> entries_;  ///< of the level at work
};

/// Numbers the classes of the set, in the order of their smallest members.
std::vector<PieceId> pieces_of(DisjointSet& members, PieceId& count) {
  std::vector<PieceId> pieces(members.size());
  count = 0;
  for (Member member = 0; member < members.size(); ++member) {
    const Member first = members.representative(member);
    pieces[member] = first == member ? count++ : pieces[first];
  }
  return pieces;
}

/// The part of a subgraph component that belongs to a piece: what is kept of its graph, with the exports of that.
Component part_of(const Component& component, std::shared_ptr<GraphData> kept) {
  const ComponentData& whole = Access::of(component);
  std::vector<std::uint32_t> exports;
  for (const auto& node : kept->nodes) {
    const std::uint32_t at = whole.subgraph->exportOf(node.first);
    if (at != SubgraphData::npos) exports.push_back(at);
  }
  std::sort(exports.begin(), exports.end());

  Component part{Graph(), {}};
  ComponentData& data = Access::write(part);
  data.parameters = whole.parameters;
  data.tags = whole.tags;
  Access::pointer(data.subgraph->graph) = std::move(kept);
  for (const std::uint32_t at : exports) {
    add_connector(data.shape, whole.shape->order()[at], whole.shape->connectors()[at].type());
    data.subgraph->append(whole.subgraph->exportedNodes[at]);
  }
  return part;
}

/// Puts the pieces of every level together, the innermost levels first.
class Assembly {
 public:
  Assembly(std::vector<Level>& levels, const std::vector<PieceId>& pieces, PieceId count)
      : levels_(levels), pieces_(pieces), slots_(count), owners_(count, levels.size()) {}

  void operator()() {
    for (std::size_t at = levels_.size(); at-- > 0;) {
      Level& level = levels_[at];
      level.whole = only_piece(level);
      if (level.whole == no_piece) split(at);
    }
  }

 private:
  /// The piece in which all of a level lies; `no_piece` when there are several.
  PieceId only_piece(const Level& level) const {
    const auto end = level.firstLeaf + leaves_of(level);
    if (level.firstNode == end && level.inner.empty()) return no_piece;
    const PieceId first = level.firstNode == end ? levels_[level.inner.front()].whole : pieces_[level.firstNode];
    for (Member member = level.firstNode; member < end; ++member) {
      if (pieces_[member] != first) return no_piece;
    }
    for (const std::size_t inner : level.inner) {
      if (levels_[inner].whole != first) return no_piece;
    }
    return first;
  }

  static Member leaves_of(const Level& level) {
    const std::size_t leaves = level.graph->components.size() - level.inner.size();
    return static_cast<Member>(leaves + (level.placeholder ? 1 : 0));
  }

  void split(std::size_t at) {
    Level& level = levels_[at];
    const GraphData& graph = *level.graph;
    Member member = level.firstNode;
    for (const auto& node : graph.nodes) part(at, pieces_[member++]).nodes.insert(node);
    member = level.firstLeaf;
    auto inner = level.inner.begin();
    for (const auto& component : graph.components) {
      if (component.second.isSubgraph()) {
        distribute(at, component.first, component.second, levels_[*inner++]);
      } else {
        add(at, pieces_[member++], component.first, component.second);
      }
    }
    for_each_connection(graph, [&](const Connection& connection, Member position) {
      part(at, pieces_[level.firstNode + position]).append(connection);
    });
  }

  void distribute(std::size_t at, const kmf::VnId& id, const Component& component, Level& inner) {
    if (inner.whole != no_piece) {
      add(at, inner.whole, id, component);
      return;
    }
    for (auto& kept : inner.parts) add(at, kept.first, id, part_of(component, std::move(kept.second)));
    inner.parts = {};
  }

  void add(std::size_t at, PieceId piece, const kmf::VnId& id, const Component& component) {
    auto& components = part(at, piece).components;
    components.emplace_hint(components.end(), id, component);
  }

  /// What a level contributes to a piece.
  GraphData& part(std::size_t at, PieceId piece) {
    auto& parts = levels_[at].parts;
    if (owners_[piece] != at) {
      owners_[piece] = at;
      slots_[piece] = parts.size();
      parts.emplace_back(piece, std::make_shared<GraphData>());
    }
    return *parts[slots_[piece]].second;
  }

  std::vector<Level>& levels_;
  const std::vector<PieceId>& pieces_;
  std::vector<std::size_t> slots_;   ///< of each piece: its place among the parts of the level that owns the entry
  std::vector<std::size_t> owners_;  ///< of each piece: the level at which it was met last
};

std::vector<Graph> split_graph(const Graph& graph) {
  Numbering numbering(graph);
  PieceId count = 0;
  const std::vector<PieceId> pieces = pieces_of(numbering.members(), count);
  Assembly(numbering.levels(), pieces, count)();
  Level& root = numbering.levels().front();
  if (root.whole != no_piece) return {graph};
  std::vector<Graph> result;
  result.reserve(root.parts.size());
  for (auto& part : root.parts) Access::pointer(result.emplace_back()) = std::move(part.second);
  return result;
}

}  // namespace

}  // namespace detail

std::vector<Graph> ConnectedComponents::operator()(const Graph& graph) const {
  return detail::split_graph(graph);
}

}  // namespace gl::core
