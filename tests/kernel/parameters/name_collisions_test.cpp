#include "common/gl/gti/src/kernel/parameters/name_collisions.hpp"

#include "common/gl/gti/src/kernel/translation/graph_access.hpp"
#include "tests/kernel/support/test_domain.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace gl::gti {
namespace {

using gl::core::Component;
using gl::core::ConnectorSpec;
using gl::core::Graph;
using gl::core::Node;
using gl::core::Parameter;
using kinemo::test::describe;

const kmf::VnIdPath1 line("test.line");

Component leaf(std::initializer_list<const char*> connectors) {
  Component made(kmf::VnIdPath1("test.block"));
  for (const char* id : connectors) made.addConnector(id, line);
  return made;
}

Node node(const ustring& object) {
  Node made;
  made.tag(gl::core::OBJECT(), object);
  return made;
}

/// A leaf x and a subgraph S on the node net; in S the leaf A, whose node k is exported as q. The parameter of S is p.
Graph example(const std::string& leafId, const std::string& net, const std::string& inner, const std::string& q,
              const std::string& p) {
  Graph inside;
  inside.insert(kmf::VnId("A"), leaf({"a", "b"}));
  inside.insert(kmf::VnId(inner), node(u"m/S/A"));
  inside.insert(kmf::VnId(inner), ConnectorSpec("A", "a"), kmf::VnIdPathIterator());
  Component subgraph(inside, {{kmf::VnId(p), Parameter(ustring(u"text"))}});
  subgraph.exportNode(kmf::VnId(inner), kmf::VnId(q), line);
  subgraph.tag(gl::core::OBJECT(), ustring(u"m/S"));
  Graph graph;
  graph.insert(kmf::VnId(leafId), leaf({"x"}));
  graph.insert(kmf::VnId("S"), subgraph);
  graph.insert(kmf::VnId(net), node(u"m/x"));
  graph.insert(kmf::VnId(net), ConnectorSpec(kmf::VnId(leafId), "x"), kmf::VnIdPathIterator());
  graph.insert(kmf::VnId(net), ConnectorSpec("S", kmf::VnId(q)), kmf::VnIdPathIterator());
  return graph;
}

TEST(NameCollisions, NothingChangesWithoutThem) {
  const Graph graph = example("L", "net", "k", "q", "p");
  const GraphIdRewrite rewrite =
      unique_graph_ids(graph, {"x", "a", "A", "k", "q"});  // all of them names of other scopes
  EXPECT_EQ(rewrite.graph, graph);
  EXPECT_EQ(&rewrite.graph.components(), &graph.components()) << "shared, not built anew";
  EXPECT_EQ(&without_collisions(graph, {"x"}).components(), &graph.components());
  const IdRenames same{{"L", "L"}, {"S", "S"}, {"net", "net"}};
  EXPECT_EQ(rewrite.renames, same);
}

TEST(NameCollisions, RenamesAreNewInEveryRespect) {
  const IdSet ids{"x", "y", "x_1", "x1", "z"};
  const IdSet reserved{"x", "y", "x_2", "x2", "y1", "other"};
  const IdRenames renames = id_renames(ids, reserved);
  IdSet taken = reserved;
  for (const kmf::VnId& id : ids) EXPECT_TRUE(taken.insert(renames.at(id)).second) << renames.at(id);
  for (const char* id : {"x_1", "x1", "z"}) EXPECT_EQ(renames.at(id), kmf::VnId(id));
  const std::string longest(64, 'a');
  const kmf::VnId fresh = id_renames({kmf::VnId(longest)}, {kmf::VnId(longest)}).at(kmf::VnId(longest));
  EXPECT_NE(fresh, kmf::VnId(longest));
  EXPECT_LE(fresh.size(), 64u);
}

TEST(NameCollisions, ConnectionsAndExportsFollow) {
  struct Case {
    const char* leafId;
    const char* net;
    const char* inner;
    const char* q;
    const char* p;
    IdSet reserved;
  };
  const Case cases[] = {
      {"R", "net", "k", "q", "p", {"R"}},        {"L", "R", "k", "q", "p", {"R", "other"}},
      {"S1", "net", "k", "q", "p", {"S", "S1"}}, {"L", "net", "p", "q", "p", {}},
      {"L", "net", "k", "p", "p", {}},           {"L", "net", "q", "q", "p", {"q"}},
      {"L", "net", "k", "q", "A", {}},           {"S1", "net", "p", "p", "p", {"S", "S1", "net", "p"}},
  };
  for (const Case& test : cases) {
    const Graph graph = example(test.leafId, test.net, test.inner, test.q, test.p);
    const GraphIdRewrite rewrite = unique_graph_ids(graph, test.reserved);
    SCOPED_TRACE(describe(graph) + " becomes " + describe(rewrite.graph));
    const auto& renames = rewrite.renames;
    for (const kmf::VnId& id : test.reserved) {
      EXPECT_EQ(rewrite.graph.components().count(id) + rewrite.graph.nodes().count(id), 0u);
    }
    const Component& subgraph = fetch<Component>(rewrite.graph, renames.at("S"));
    ASSERT_EQ(subgraph.connectorOrder().size(), 1u);
    const kmf::VnId connector = subgraph.connectorOrder().front();
    EXPECT_NE(connector, kmf::VnId(test.p));
    EXPECT_EQ(subgraph.parameters().begin()->first, kmf::VnId(test.p)) << "parameters keep their names";
    EXPECT_EQ(gl::core::object(subgraph), u"m/S");
    EXPECT_EQ(fetch<gl::core::Connector>(subgraph, connector).type(), line);
    for (const auto& used : {kmf::VnId(test.p), connector}) {
      EXPECT_EQ(subgraph.graph().components().count(used) + subgraph.graph().nodes().count(used), 0u) << used;
    }
    const kmf::VnId* net = rewrite.graph.nodeOf(ConnectorSpec(renames.at("S"), connector));
    ASSERT_NE(net, nullptr);
    EXPECT_EQ(*net, renames.at(test.net));
    EXPECT_EQ(gl::core::object(rewrite.graph.nodes().at(*net)), u"m/x");
    EXPECT_EQ(*rewrite.graph.nodeOf(ConnectorSpec(renames.at(test.leafId), "x")), *net);
    const auto& inside = *subgraph.graph().nodes().begin();
    EXPECT_EQ(subgraph.mapExported(inside.first), connector);
    EXPECT_EQ(subgraph.graph().connections(inside.first).size(), 1u);
  }
}

/// A subgraph with the parameters p and r. In it are `inner` as p, whose connector p is at the node net and leads out
/// as p, and a leaf L at the node r, which stays inside.
Component crowded(const Component& inner) {
  Graph inside;
  inside.insert(kmf::VnId("p"), inner);
  inside.insert(kmf::VnId("L"), leaf({"a"}));
  inside.insert(kmf::VnId("net"), node(u"out"));
  inside.insert(kmf::VnId("r"), node(u"in"));
  inside.insert(gl::core::Connection("net", {"p", "p"}), {});
  inside.insert(gl::core::Connection("r", {"L", "a"}), {});
  Component made(inside, {{"p", Parameter(ustring())}, {"r", Parameter(ustring())}});
  made.exportNode("net", "p", line);
  return made;
}

TEST(NameCollisions, GoAtAllLevelsAtOnce) {
  Graph top;
  top.insert(kmf::VnId("p"), crowded(crowded(leaf({"p"}))));
  top.insert(kmf::VnId("net"), node(u"out"));
  top.insert(gl::core::Connection("net", {"p", "p"}), {});
  const Graph made = unique_graph_ids(top, {"p", "net"}).graph;
  SCOPED_TRACE(describe(made));
  const Graph* level = &made;
  IdSet reserved{"p", "net"};
  for (int depth = 0; depth < 3; ++depth) {
    for (const kmf::VnId& id : reserved) EXPECT_EQ(level->components().count(id) + level->nodes().count(id), 0u) << id;
    ASSERT_EQ(level->nodes().size(), depth == 0 ? 1u : 2u);
    const Component* next = nullptr;
    for (const auto& [id, held] : level->nodes()) {
      const auto& connections = level->connections(id);
      ASSERT_EQ(connections.size(), 1u);
      const ConnectorSpec& spec = connections.begin()->connectorSpec();
      const bool out = gl::core::object(held) == u"out";
      EXPECT_EQ(spec.componentId() == kmf::VnId("L"), !out);
      if (out) next = &level->components().at(spec.componentId());
    }
    ASSERT_NE(next, nullptr);
    if (depth == 2) break;
    ASSERT_EQ(next->connectorOrder().size(), 1u);
    reserved = {"p", "r", next->connectorOrder().front()};
    EXPECT_EQ(reserved.size(), 3u) << "the connector too has another name than the parameters";
    for (const auto& [id, held] : next->graph().nodes())
      EXPECT_EQ(next->isExported(id), gl::core::object(held) == u"out") << id;
    level = &next->graph();
  }
}

TEST(NameCollisions, NamesOfOuterScopesDontReachIn) {
  const Graph graph = example("L", "net", "k", "q", "p");
  const SubgraphIdRewrite rewrite = unique_subgraph_ids(graph.components().at("S"));
  EXPECT_EQ(rewrite.component, graph.components().at("S"));
  EXPECT_EQ(unique_graph_ids(graph, {"A", "k"}).graph, graph);
}

TEST(NameCollisions, DeepNestingNeedsNoStack) {
  Component inner = leaf({"a"});
  for (int depth = 0; depth < 30000; ++depth) {
    Graph level;
    level.insert(kmf::VnId("p"), inner);
    inner = Component(level, {{"p", Parameter(ustring())}});
  }
  Graph top;
  top.insert(kmf::VnId("S"), inner);
  const Graph made = unique_graph_ids(top, {}).graph;
  EXPECT_EQ(made.components().at("S").graph().components().count("p"), 0u);
}

}  // namespace
}  // namespace gl::gti
