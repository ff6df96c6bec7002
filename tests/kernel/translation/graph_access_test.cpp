#include "common/gl/gti/src/kernel/translation/graph_access.hpp"

#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace gl::gti {
namespace {

using gl::core::Component;
using gl::core::Connector;
using gl::core::Graph;
using gl::core::Node;
using gl::core::Parameter;
using kinemo::test::error_of;
using ::testing::ElementsAre;

const kmf::VnIdPathIterator here;

/// S[ C with the connector p and the parameter k; node M ], node N
Graph nested() {
  Component leaf(kmf::VnIdPath1("test.leaf"));
  leaf.addConnector("p", "test.line");
  leaf.addParameter("k", Parameter(ustring(u"1")));
  Graph inner;
  inner.insert("C", leaf);
  inner.insert("M", Node());
  Graph graph;
  graph.insert("S", Component(inner, {}));
  graph.insert("N", Node());
  return graph;
}

TEST(GraphAccess, FetchesWhatAnAddressLeadsTo) {
  const Graph graph = nested();
  EXPECT_EQ(fetch<Component>(graph, "S.C").type(), kmf::VnIdPath1("test.leaf"));
  EXPECT_EQ(fetch<Connector>(graph, "S.C.p").type(), kmf::VnIdPath1("test.line"));
  EXPECT_EQ(boost::get<ustring>(fetch<Parameter>(graph, "S.C.k").get(here)), u"1");
  EXPECT_EQ(fetch<Connector>(fetch<Component>(graph, "S.C"), "p").type(), kmf::VnIdPath1("test.line"));
}

TEST(GraphAccess, AddressesThatLeadNowhereOrElsewhereAreErrors) {
  const Graph graph = nested();
  EXPECT_EQ(error_of([&] { fetch<Component>(graph, "S.X"); }), "kinemo:graph:core:EntryNameNotFound(S.X)");
  EXPECT_EQ(error_of([&] { fetch<Node>(graph, "S.C"); }), "kinemo:graph:core:EntryTypeMismatch(S.C)");
  EXPECT_EQ(error_of([&] { fetch<Component>(graph, "N"); }), "kinemo:graph:core:EntryTypeMismatch(N)");
}

TEST(GraphAccess, ListsEntriesOfATypeDownToADepth) {
  const Graph graph = nested();
  EXPECT_THAT(idsOf<Component>(graph, here, 1), ElementsAre(kmf::VnIdPath("S")));
  EXPECT_THAT(idsOf<Component>(graph, here, allDepths), ElementsAre(kmf::VnIdPath("S"), kmf::VnIdPath("S.C")));
  EXPECT_THAT(idsOf<Node>(graph, here, allDepths), ElementsAre(kmf::VnIdPath("N"), kmf::VnIdPath("S.M")));
  EXPECT_THAT(idsOf<Connector>(graph, "S", 1), ElementsAre());
  EXPECT_THAT(idsOf<Connector>(graph, "S", 2), ElementsAre(kmf::VnIdPath("C.p")));
  EXPECT_THAT(idsOf<Parameter>(graph, "S.C", 1), ElementsAre(kmf::VnIdPath("k")));
}

}  // namespace
}  // namespace gl::gti
