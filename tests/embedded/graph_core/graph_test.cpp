#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/embedded/graph_core/sample_graphs.hpp"

namespace gl::core::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The map of entries is one object for all values that share a graph.
const void* identity(const Graph& graph) {
  return &graph.components();
}

const Component& at(const Graph& graph, const char* id) {
  return graph.components().at(id);
}

TEST(Graph, CopiesShareUntilOneIsWritten) {
  const Graph original = loaded_divider();
  Graph copy = original;
  EXPECT_EQ(identity(copy), identity(original));
  copy.insert("extra", Node());
  EXPECT_NE(identity(copy), identity(original));
  EXPECT_EQ(original.nodes().count("extra"), 0u);

  const void* unshared = identity(copy);
  copy.insert("more", Node());
  EXPECT_EQ(identity(copy), unshared) << "a graph that nobody shares is written in place";
}

TEST(Graph, WritingDeepCopiesTheGraphsOnTheAddressAlone) {
  Graph outer;
  outer.insert("left", Component(loaded_divider(), {}));
  outer.insert("right", Component(loaded_divider(), {}));
  Graph copy = outer;
  copy.insert("left.d.extra", Node());

  EXPECT_NE(identity(copy), identity(outer));
  EXPECT_NE(identity(at(copy, "left").graph()), identity(at(outer, "left").graph()));
  EXPECT_NE(identity(at(at(copy, "left").graph(), "d").graph()), identity(at(at(outer, "left").graph(), "d").graph()));
  EXPECT_EQ(identity(at(copy, "right").graph()), identity(at(outer, "right").graph()));
  EXPECT_EQ(outer.ids("left.d", 1).count("extra"), 0u);
  EXPECT_EQ(copy.ids("left.d", 1).count("extra"), 1u);

  const void* inner = identity(at(copy, "left").graph());
  copy.insert("left.another", Node());
  EXPECT_EQ(identity(at(copy, "left").graph()), inner);
}

TEST(Graph, ABadInsertionLeavesTheGraphAsItWas) {
  const Graph original = loaded_divider();
  Graph graph = original;
  const ConnectorSpec spec("load", "p");
  EXPECT_EQ(error_of([&] { graph.insert("d", Node()); }), "DuplicateEntry(d)");
  EXPECT_EQ(error_of([&] { graph.insert("top", resistor()); }), "DuplicateEntry(top)");
  EXPECT_EQ(error_of([&] { graph.insert("d.r1", Node()); }), "DuplicateEntry(r1)");
  EXPECT_EQ(error_of([&] { graph.insert("", Node()); }), "EntryNameNotFound()");
  EXPECT_EQ(error_of([&] { graph.insert("nobody.x", Node()); }), "EntryNameNotFound(nobody)");
  EXPECT_EQ(error_of([&] { graph.insert("load.x", Node()); }), "EntryTypeMismatch(load)");
  EXPECT_EQ(error_of([&] { graph.insert("d.r1.x", Node()); }), "EntryTypeMismatch(d.r1)");
  EXPECT_EQ(error_of([&] { graph.insert("nowhere", spec, ""); }), "EntryNameNotFound(nowhere)");
  EXPECT_EQ(error_of([&] { graph.insert("top", ConnectorSpec("nobody", "p"), ""); }), "EntryNameNotFound(nobody.p)");
  EXPECT_EQ(error_of([&] { graph.insert("top", ConnectorSpec("load", "R"), ""); }), "EntryNameNotFound(load.R)");
  EXPECT_EQ(error_of([&] { graph.insert("top", ConnectorSpec("load", "p"), "load"); }), "EntryTypeMismatch(load)");
  EXPECT_EQ(error_of([&] { graph.insert("bottom", spec, ""); }), "AlreadyConnected(load.p, top)");
  EXPECT_EQ(error_of([&] { graph.insert("top", spec, ""); }), "") << "connecting the same again changes nothing";
  EXPECT_EQ(identity(graph), identity(original));
}

TEST(Graph, ConnectionsAreFoundByConnectorByNodeAndByLevel) {
  Graph graph = loaded_divider();
  graph.insert("loose", resistor());
  const Connection first("top", ConnectorSpec("d", "a"));
  const Connection second("top", ConnectorSpec("load", "p"));
  EXPECT_THAT(graph.incident("d.a"), ElementsAre(first));
  EXPECT_THAT(graph.incident("top"), ElementsAre(first, second));
  EXPECT_THAT(graph.connections("top"), ElementsAre(first, second));
  EXPECT_THAT(graph.incident("loose.p"), IsEmpty());
  EXPECT_THAT(graph.incident("d.r1.n"), ElementsAre(Connection("middle", ConnectorSpec("r1", "n"))));
  EXPECT_THAT(graph.incident("d.left"), ElementsAre(Connection("left", ConnectorSpec("r1", "p"))));
  EXPECT_EQ(graph.connections("").size(), 4u);
  EXPECT_EQ(graph.connections("d").size(), 4u);
  EXPECT_EQ(graph.nodeOf(ConnectorSpec("loose", "p")), nullptr);
  EXPECT_EQ(*graph.nodeOf(ConnectorSpec("load", "n")), kmf::VnId("bottom"));
  EXPECT_EQ(error_of([&] { graph.incident("d.zz"); }), "EntryNameNotFound(d.zz)");
  EXPECT_EQ(error_of([&] { graph.incident("load.R"); }), "EntryTypeMismatch(load.R)");
  EXPECT_EQ(error_of([&] { graph.connections("load"); }), "EntryTypeMismatch(load)");
}

TEST(Graph, ConnectionsOfANodeFollowLaterInsertions) {
  Graph graph = loaded_divider();
  EXPECT_EQ(graph.connections("top").size(), 2u);
  const Graph before = graph;
  graph.insert("extra", resistor());
  graph.insert("top", ConnectorSpec("extra", "p"), "");
  EXPECT_EQ(graph.connections("top").size(), 3u);
  EXPECT_EQ(before.connections("top").size(), 2u);
}

TEST(Graph, TheIndexOfConnectorsSurvivesCopiesAndGrowth) {
  Graph graph;
  graph.insert("n", Node());
  const auto name = [](int i) { return kmf::VnId("c" + std::to_string(i)); };
  std::vector<Graph> history;
  for (int i = 0; i < 300; ++i) {
    graph.insert(name(i), resistor());
    graph.insert("n", ConnectorSpec(name(i), "p"), "");
    if (i % 50 == 0) history.push_back(graph);
  }
  for (int i = 0; i < 300; ++i) {
    ASSERT_NE(graph.nodeOf(ConnectorSpec(name(i), "p")), nullptr);
    EXPECT_EQ(graph.nodeOf(ConnectorSpec(name(i), "n")), nullptr);
    EXPECT_EQ(history[2].nodeOf(ConnectorSpec(name(i), "p")) != nullptr, i <= 100);
  }
}

TEST(Graph, EqualityIsThatOfStructure) {
  EXPECT_TRUE(loaded_divider() == loaded_divider());
  EXPECT_TRUE(Graph() == Graph());
  const auto changed = [](auto change) {
    Graph graph = loaded_divider();
    change(graph);
    return graph;
  };
  EXPECT_FALSE(loaded_divider() == changed([](Graph& graph) { graph.insert("extra", Node()); }));
  EXPECT_FALSE(loaded_divider() == changed([](Graph& graph) { graph.insert("d.extra", Node()); }));
  EXPECT_FALSE(loaded_divider() == changed([](Graph& graph) { graph.insert("d.extra", Component()); }));
  Graph one;
  one.insert("r", resistor());
  one.insert("x", Node());
  one.insert("y", Node());
  Graph other = one;
  one.insert("x", ConnectorSpec("r", "p"), "");
  other.insert("y", ConnectorSpec("r", "p"), "");
  EXPECT_FALSE(one == other);
}

/// Twice the same graph on every level: 2^100 resistors when it is told as a tree.
Graph doubled() {
  Graph graph;
  graph.insert("r", resistor());
  for (int level = 0; level < 100; ++level) {
    const Component component(graph, {});
    graph = Graph();
    graph.insert("a", component);
    graph.insert("b", component);
  }
  return graph;
}

TEST(Graph, EqualityOfSharedStructureIsNotExponential) {
  EXPECT_TRUE(doubled() == doubled());
}

TEST(Graph, SharedNestingEndsWithoutRecursion) {
  Graph graph;
  for (int level = 0; level < 100000; ++level) {
    const Component component(graph, {});
    graph = Graph();
    graph.insert("a", component);
    graph.insert("b", component);
    graph.insert("c", Component(component.graph(), {}));
  }
  graph = Graph();
  EXPECT_TRUE(graph.components().empty());
}

TEST(Graph, DeepNestingNeedsNoStack) {
  const std::size_t levels = 10000;
  const Graph graph = nested(levels);
  EXPECT_TRUE(graph == nested(levels));
  EXPECT_FALSE(graph == nested(levels - 1));

  EXPECT_EQ(objects(graph).size(), 1u);
  Ids parameters;
  detail::GraphIdBuilder builder(detail::GraphIdTypePredicate<Parameter>(), "", parameters);
  graph.buildIds(builder, "", all_levels);
  ASSERT_EQ(parameters.size(), 1u);
  EXPECT_EQ(parameters.begin()->size(), levels + 2);
  EXPECT_EQ(nested(500).ids("", all_levels).size(), 3 * 500u + 1);
  EXPECT_EQ(ConnectedComponents()(graph).size(), 1u);

  Graph copy = graph;
  std::vector<kmf::VnId> path(levels + 1, "s");
  path.back() = "extra";
  copy.insert(kmf::VnIdPath(path), Node());
  EXPECT_FALSE(copy == graph);
  EXPECT_EQ(ConnectedComponents()(copy).size(), 2u);
}

}  // namespace
}  // namespace gl::core::test
