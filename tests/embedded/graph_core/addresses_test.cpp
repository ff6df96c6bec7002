#include <gtest/gtest.h>

#include "tests/embedded/graph_core/sample_graphs.hpp"

namespace gl::core::test {
namespace {

/// What a search with the predicate of one type comes to: "found", "mismatch" or "nothing".
template <class T, class Start>
std::string search(const Start& start, const char* address) {
  const detail::FindResult result = start.findEntry(address, detail::GraphIdTypePredicate<T>());
  if (boost::get<detail::NotFound>(&result) != nullptr) return "nothing";
  if (boost::get<detail::TypeMismatch>(&result) != nullptr) return "mismatch";
  return boost::get<const T*>(boost::get<GraphEntryRef>(result)) != nullptr ? "found" : "null";
}

/// The types for which something is found at an address, by their first letters in the order Component, Graph, Node,
/// Parameter, connector (K), text (T), Value, Expr; "-" when there is nothing at all.
template <class Start>
std::string kinds(const Start& start, const char* address) {
  const std::string results[] = {search<Component>(start, address),
                                 search<Graph>(start, address),
                                 search<Node>(start, address),
                                 search<Parameter>(start, address),
                                 search<Connector>(start, address),
                                 search<ustring>(start, address),
                                 search<data2::core::Value>(start, address),
                                 search<data2::core::Expr>(start, address)};
  std::string found;
  for (std::size_t i = 0; i < 8; ++i) {
    if (results[i] == "found") found += "CGNPKTVE"[i];
    EXPECT_EQ(results[i] == "nothing", results[0] == "nothing") << address;
  }
  return results[0] == "nothing" ? "-" : found;
}

/// A subgraph where an inner component, an inner node, a connector and a parameter bear the same names.
Graph with_clashes() {
  Graph inner;
  inner.insert("x", resistor());
  inner.insert("y", Node());
  Component component(inner, {{"x", Parameter(text(u"text"))}, {"y", Parameter(number(1))}});
  component.exportNode("y", "y", "physical.electrical");
  Graph graph;
  graph.insert("sub", component);
  return graph;
}

TEST(FindEntry, AddressesLeadToEverythingThatBearsThem) {
  const struct {
    const char* address;
    const char* kinds;
  } table[] = {
      {"", "G"},        {"d", "CG"},       {"load", "C"},       {"top", "N"},      {"d.r1", "C"},
      {"d.left", "N"},  {"d.gain", "PV"},  {"d.a", "K"},        {"d.r1.p", "K"},   {"d.r1.R", "PV"},
      {"load.R", "PV"}, {"load.p", "K"},   {"nobody", "-"},     {"load.zz", "-"},  {"load.R.x", "-"},
      {"top.x", "-"},   {"d.r1.p.x", "-"}, {"d.nobody.x", "-"}, {"d.left.x", "-"},
  };
  const Graph graph = loaded_divider();
  for (const auto& row : table) EXPECT_EQ(kinds(graph, row.address), row.kinds) << row.address;
}

TEST(FindEntry, ThePredicateDecidesBetweenEqualNames) {
  const Graph graph = with_clashes();
  EXPECT_EQ(kinds(graph, "sub.x"), "CPT");
  EXPECT_EQ(kinds(graph, "sub.y"), "NPKV");
}

TEST(FindEntry, FromAComponentTheEmptyAddressIsTheComponentAndItsGraph) {
  EXPECT_EQ(kinds(divider(), ""), "CG");
  EXPECT_EQ(kinds(resistor(), ""), "C");
  EXPECT_EQ(kinds(divider(), "r2.n"), "K");
  EXPECT_EQ(kinds(divider(), "gain"), "PV");
  EXPECT_EQ(kinds(resistor(), "p.x"), "-");
  const Component component = divider();
  const auto found = component.findEntry("", detail::GraphIdTypePredicate<Graph>());
  EXPECT_EQ(boost::get<const Graph*>(boost::get<GraphEntryRef>(found)), &component.graph());
}

template <class T, class Start>
std::string listed(const Start& start, const char* from, std::size_t depth, const char* prefix = "") {
  Ids ids;
  detail::GraphIdBuilder builder(detail::GraphIdTypePredicate<T>(), prefix, ids);
  start.buildIds(builder, from, depth);
  return joined(ids);
}

TEST(BuildIds, ListsByKindAndDepth) {
  const Graph graph = loaded_divider();
  EXPECT_EQ(listed<Component>(graph, "", 1), "d load");
  EXPECT_EQ(listed<Component>(graph, "", all_levels), "d d.r1 d.r2 load");
  EXPECT_EQ(listed<Node>(graph, "", all_levels), "bottom d.left d.middle d.right top");
  EXPECT_EQ(listed<Graph>(graph, "", all_levels), "d");
  EXPECT_EQ(listed<Parameter>(graph, "", 1), "");
  EXPECT_EQ(listed<Parameter>(graph, "", 2), "d.gain load.R");
  EXPECT_EQ(listed<Parameter>(graph, "", all_levels), "d.gain d.r1.R d.r2.R load.R");
  EXPECT_EQ(listed<Connector>(graph, "", 2), "d.a d.b load.n load.p");
  EXPECT_EQ(listed<Component>(graph, "", 0), "");
}

TEST(BuildIds, FromAComponentItsOwnEntriesAreOneLevelDeep) {
  EXPECT_EQ(listed<Parameter>(divider(), "", 1), "gain");
  EXPECT_EQ(listed<Connector>(divider(), "", 1), "a b");
  EXPECT_EQ(listed<Connector>(divider(), "", 2), "a b r1.n r1.p r2.n r2.p");
  EXPECT_EQ(listed<Node>(divider(), "", 1), "left middle right");
  EXPECT_EQ(listed<Parameter>(resistor(), "", 1), "R");
  EXPECT_EQ(listed<Parameter>(resistor(), "", 0), "");
}

TEST(BuildIds, AddressesAreToldFromTheStartBehindThePrefix) {
  const Graph graph = loaded_divider();
  EXPECT_EQ(listed<Component>(graph, "d", 1), "r1 r2");
  EXPECT_EQ(listed<Parameter>(graph, "d", 1), "gain");
  EXPECT_EQ(listed<Component>(graph, "d", 1, "d"), "d.r1 d.r2");
  EXPECT_EQ(listed<Parameter>(graph, "d.r1", 1, "here"), "here.R");
  EXPECT_EQ(error_of([&] { listed<Component>(graph, "nobody", 1); }), "EntryNameNotFound(nobody)");
  EXPECT_EQ(error_of([&] { listed<Component>(graph, "top", 1); }), "EntryTypeMismatch(top)");
}

TEST(Ids, AreComponentsAndNodes) {
  const Graph graph = loaded_divider();
  EXPECT_EQ(joined(graph.ids("", 1)), "bottom d load top");
  EXPECT_EQ(joined(graph.ids("", 2)), "bottom d d.left d.middle d.r1 d.r2 d.right load top");
  EXPECT_EQ(joined(graph.ids("d", all_levels)), "left middle r1 r2 right");
  EXPECT_EQ(joined(graph.ids("load", all_levels)), "");
  EXPECT_EQ(error_of([&] { graph.ids("top", 1); }), "EntryTypeMismatch(top)");
}

}  // namespace
}  // namespace gl::core::test
