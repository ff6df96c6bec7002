#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/embedded/graph_core/sample_graphs.hpp"

namespace gl::core::test {
namespace {

/// The ids of each piece at all levels, sorted.
std::vector<std::string> pieces(const Graph& graph) {
  std::vector<std::string> result;
  for (const Graph& piece : ConnectedComponents()(graph)) result.push_back(joined(piece.ids("", all_levels)));
  std::sort(result.begin(), result.end());
  return result;
}

using Pieces = std::vector<std::string>;

/// Two networks that pass through one subgraph without touching each other:
///
///   --o-- a = x [r1] --ground_a      r1 hangs on x, r2 on y; both are alone inside
///   --o-- b = y [r2] --ground_b
Component two_networks() {
  Graph graph;
  graph.insert("r1", resistor());
  graph.insert("r2", resistor());
  connect(graph, "x", {"r1.p", "r1.n"});
  connect(graph, "y", {"r2.p", "r2.n"});
  Component component(graph, {{"gain", Parameter(number(2))}});
  component.tag(OBJECT(), text(u"block"));
  component.exportNode("y", "b", "physical.thermal");
  component.exportNode("x", "a", "physical.electrical");
  return component;
}

TEST(ConnectedComponents, AConnectedGraphIsItsOwnPieceAndShared) {
  const Graph graph = loaded_divider();
  const std::vector<Graph> result = ConnectedComponents()(graph);
  ASSERT_EQ(result.size(), 1u);
  EXPECT_EQ(&result[0].components(), &graph.components());
  EXPECT_TRUE(ConnectedComponents()(Graph()).empty());
}

TEST(ConnectedComponents, WhatIsNotConnectedIsAPieceOfItsOwn) {
  Graph graph = loaded_divider();
  graph.insert("alone", resistor());
  graph.insert("node", Node());
  graph.insert("empty", Component(Graph(), {}));
  EXPECT_EQ(pieces(graph), (Pieces{"alone", "bottom d d.left d.middle d.r1 d.r2 d.right load top", "empty", "node"}));
}

TEST(ConnectedComponents, ASubgraphOfTwoNetworksIsSplit) {
  Graph graph;
  graph.insert("sub", two_networks());
  graph.insert("u", resistor());
  graph.insert("v", resistor());
  connect(graph, "m", {"sub.a", "u.p"});
  connect(graph, "n", {"sub.b", "v.p"});
  EXPECT_EQ(pieces(graph), (Pieces{"m sub sub.r1 sub.x u", "n sub sub.r2 sub.y v"}));

  for (const Graph& piece : ConnectedComponents()(graph)) {
    const Component& part = piece.components().at("sub");
    const bool first = piece.components().count("u") == 1;
    EXPECT_EQ(part.isExported("x"), first);
    EXPECT_EQ(part.isExported("y"), !first);
    EXPECT_EQ(part.connectorOrder(), std::vector<kmf::VnId>{first ? "a" : "b"});
    EXPECT_EQ(object(part), u"block");
    EXPECT_EQ(part.parameters().count("gain"), 1u);
    EXPECT_EQ(piece.connections("").size(), 2u);
    EXPECT_NE(piece.nodeOf(ConnectorSpec("sub", first ? "a" : "b")), nullptr);
    EXPECT_EQ(part.graph().connections("").size(), 2u);
    const auto type = part.findEntry(first ? "a" : "b", detail::GraphIdTypePredicate<Connector>());
    EXPECT_EQ(boost::get<const Connector*>(boost::get<GraphEntryRef>(type))->type(),
              kmf::VnIdPath1(first ? "physical.electrical" : "physical.thermal"));
  }
}

TEST(ConnectedComponents, NetworksJoinedOutsideOrFurtherInAreOne) {
  Graph outside;
  outside.insert("sub", two_networks());
  connect(outside, "m", {"sub.a", "sub.b"});
  EXPECT_EQ(pieces(outside).size(), 1u);

  // The connection of the two lies two levels further in.
  Graph graph;
  graph.insert("left", resistor());
  graph.insert("right", resistor());
  graph.insert("s", nested(2).components().at("s"));
  connect(graph, "m", {"left.p", "s.p"});
  connect(graph, "n", {"right.p", "s.n"});
  EXPECT_EQ(pieces(graph).size(), 1u);
}

TEST(ConnectedComponents, SubgraphsWithoutConnectionsFallApart) {
  Graph graph;
  graph.insert("sub", two_networks());
  graph.insert("shell", Component(graph, {}));
  EXPECT_EQ(pieces(graph),
            (Pieces{"shell shell.sub shell.sub.r1 shell.sub.x", "shell shell.sub shell.sub.r2 shell.sub.y",
                    "sub sub.r1 sub.x", "sub sub.r2 sub.y"}));
}

TEST(ConnectedComponents, ManyPiecesOnManyLevels) {
  Graph graph;
  graph.insert("r", resistor());
  for (int level = 1; level < 200; ++level) {
    const Component inner(graph, {});
    graph = Graph();
    graph.insert("r", resistor());
    graph.insert("s", inner);
  }
  const std::vector<Graph> result = ConnectedComponents()(graph);
  ASSERT_EQ(result.size(), 200u);
  std::set<std::size_t> depths;
  for (const Graph& piece : result) depths.insert(piece.ids("", all_levels).size());
  EXPECT_EQ(depths.size(), 200u) << "each piece is one chain of subgraphs down to its resistor";
}

/// A random hierarchy of blocks and nodes. Connections are made at random on every level.
class RandomGraph {
 public:
  explicit RandomGraph(unsigned seed) : random_(seed) {}

  Graph make(int levels) {
    Graph graph;
    for (int i = 0; i < 5; ++i) graph.insert(kmf::VnId("n" + std::to_string(i)), Node());
    for (int i = 0; i < 4; ++i) {
      const kmf::VnId id("c" + std::to_string(i));
      const Component component = levels > 0 && below(2) == 0 ? subgraph(levels - 1) : resistor();
      graph.insert(id, component);
      for (const kmf::VnId& connector : component.connectorOrder()) {
        if (below(3) != 0) graph.insert(node(), ConnectorSpec(id, connector), "");
      }
    }
    return graph;
  }

 private:
  Component subgraph(int levels) {
    Component component(make(levels), {});
    for (int i = 0; i < 5; ++i) {
      const std::string name = std::to_string(i);
      if (below(2) == 0) component.exportNode(kmf::VnId("n" + name), "e" + name, "physical.electrical");
    }
    return component;
  }
  unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  kmf::VnId node() { return "n" + std::to_string(below(5)); }

  std::mt19937 random_;
};

using Links = std::map<kmf::VnIdPath, std::set<kmf::VnIdPath>>;

kmf::VnIdPath behind(const kmf::VnIdPath& prefix, const kmf::VnId& id) {
  kmf::VnIdPath path = prefix;
  path.append(id);
  return path;
}

/// Every leaf and node with its neighbours, told by the definition of connection.
void collect_links(const Graph& graph, const kmf::VnIdPath& at, Links& links) {
  for (const auto& node : graph.nodes()) links[behind(at, node.first)];
  for (const auto& component : graph.components()) {
    const kmf::VnIdPath path = behind(at, component.first);
    if (component.second.isSubgraph()) {
      collect_links(component.second.graph(), path, links);
    } else {
      links[path];
    }
  }
  for (const Connection& connection : graph.connections("")) {
    const Component& component = graph.components().at(connection.connectorSpec().componentId());
    kmf::VnIdPath other = behind(at, connection.connectorSpec().componentId());
    if (component.isSubgraph()) {
      for (const auto& node : component.graph().nodes()) {
        if (!component.isExported(node.first)) continue;
        if (component.mapExported(node.first) == connection.connectorSpec().connectorId()) other.append(node.first);
      }
    }
    const kmf::VnIdPath node = behind(at, connection.nodeId());
    links[node].insert(other);
    links[other].insert(node);
  }
}

/// The sets of leaves and nodes that hang together, found by following the links.
std::set<std::set<kmf::VnIdPath>> followed(const Links& links) {
  std::set<std::set<kmf::VnIdPath>> result;
  std::set<kmf::VnIdPath> seen;
  for (const auto& start : links) {
    if (!seen.insert(start.first).second) continue;
    std::set<kmf::VnIdPath> piece{start.first};
    std::vector<kmf::VnIdPath> pending{start.first};
    while (!pending.empty()) {
      const kmf::VnIdPath from = pending.back();
      pending.pop_back();
      for (const kmf::VnIdPath& to : links.at(from)) {
        if (seen.insert(to).second) pending.push_back(to);
        piece.insert(to);
      }
    }
    result.insert(piece);
  }
  return result;
}

TEST(ConnectedComponents, AgreesWithFollowingTheConnectionsOneByOne) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    const Graph graph = RandomGraph(seed).make(3);
    Links all;
    collect_links(graph, {}, all);
    std::set<std::set<kmf::VnIdPath>> found;
    Links together;
    for (const Graph& piece : ConnectedComponents()(graph)) {
      Links links;
      collect_links(piece, {}, links);
      const auto inside = followed(links);
      EXPECT_EQ(inside.size(), 1u) << "a piece hangs together";
      found.insert(inside.begin(), inside.end());
      together.insert(links.begin(), links.end());
    }
    EXPECT_EQ(found, followed(all));
    EXPECT_EQ(together, all) << "no connection is lost";
  }
}

}  // namespace
}  // namespace gl::core::test
