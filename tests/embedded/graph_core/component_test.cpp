#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/embedded/graph_core/sample_graphs.hpp"

namespace gl::core::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Component, ConnectorsKeepTheOrderOfAdditionHoweverManyThereAre) {
  Component component("physical.bus");
  std::vector<kmf::VnId> expected;
  for (int i = 40; i > 0; --i) {
    expected.push_back("pin" + std::to_string(i));
    component.addConnector(expected.back(), i % 2 == 0 ? "physical.electrical" : "physical.thermal");
    const Component before = component;
    EXPECT_EQ(error_of([&] { component.addConnector(expected.back(), "physical.electrical"); }),
              "DuplicateEntry(" + std::string(expected.back()) + ")");
  }
  EXPECT_EQ(component.connectorOrder(), expected);
  EXPECT_EQ(component.type(), kmf::VnIdPath1("physical.bus"));
  const auto found = component.findEntry("pin8", detail::GraphIdTypePredicate<Connector>());
  EXPECT_EQ(boost::get<const Connector*>(boost::get<GraphEntryRef>(found))->type(),
            kmf::VnIdPath1("physical.electrical"));
}

TEST(Component, ComponentsOfOneKindShareTheirConnectors) {
  const Component one = resistor();
  Component other = resistor();
  EXPECT_EQ(&one.connectorOrder(), &other.connectorOrder());
  other.addConnector("extra", "physical.thermal");
  EXPECT_THAT(one.connectorOrder(), ElementsAre("p", "n"));
  EXPECT_THAT(other.connectorOrder(), ElementsAre("p", "n", "extra"));
}

TEST(Component, CopiesShareUntilOneIsWritten) {
  const Component original = resistor();
  Component copy = original;
  EXPECT_EQ(&copy.parameters(), &original.parameters());
  copy.tag("note", text(u"tagged"));
  EXPECT_EQ(&copy.parameters(), &original.parameters()) << "a tag doesn't copy parameters";
  EXPECT_FALSE(original.hasTag("note"));
  copy.set("R", number(5, "Ohm"));
  EXPECT_NE(&copy.parameters(), &original.parameters());
  EXPECT_TRUE(original.parameters().at("R").get("") == number(1e3, "Ohm"));
}

TEST(Component, TagsAreReplacedAndListedInOrder) {
  Component component = resistor();
  component.tag("zeta", text(u"1"));
  component.tag("alpha", text(u"2"));
  component.tag("zeta", component.tag("alpha"));
  EXPECT_THAT(component.tags(), ElementsAre("alpha", "zeta"));
  EXPECT_TRUE(component.tag("zeta") == text(u"2"));
  EXPECT_EQ(error_of([&] { component.tag("beta"); }), "NoSuchTag(beta)");
  Node node;
  EXPECT_THAT(node.tags(), IsEmpty());
  EXPECT_EQ(error_of([&] { node.tag("beta"); }), "NoSuchTag(beta)");
}

TEST(Component, TheObjectIsTheTextOfItsTag) {
  Component component = resistor();
  EXPECT_EQ(object(component), u"");
  component.tag(OBJECT(), number(3));
  EXPECT_EQ(object(component), u"");
  component.tag(OBJECT(), text(u"model/R1"));
  EXPECT_EQ(object(component), u"model/R1");
  Graph graph = loaded_divider();
  graph.insert("d.r3", component);
  EXPECT_EQ(objects(graph), (std::map<kmf::VnIdPath, ustring>{{"d.r3", u"model/R1"}}));
}

TEST(Component, SettingAParameterKeepsItsTypeAndChecksIt) {
  const auto expression = [](const char* source, const char* unit) {
    const auto parsed = data2::cvi::CorvaneParser()(source);
    return ParameterVariant(data2::core::Expr(data2::core::UnitBindExpr(*parsed, units2::core::parse(unit))));
  };
  Component component = resistor();
  component.addParameter("name", Parameter(text(u"x"), ParameterType::text()));
  component.addParameter("free", Parameter(text(u"x")));
  const struct {
    const char* parameter;
    ParameterVariant value;
    bool fits;
  } table[] = {
      {"R", number(2, "kOhm"), true},
      {"R", number(2), true},
      {"R", number(2, "V"), false},
      {"R", expression("k", "MOhm"), true},
      {"R", expression("k", ""), true},
      {"R", expression("k", "A"), false},
      {"R", text(u"2"), false},
      {"name", text(u"y"), true},
      {"name", number(1), false},
      {"free", number(1, "V"), true},
      {"free", expression("k", "A"), true},
  };
  for (const auto& row : table) {
    const ParameterType before = component.parameters().at(row.parameter).type();
    const std::string expected = row.fits ? "" : "ParameterTypeMismatch(" + std::string(row.parameter) + ")";
    EXPECT_EQ(error_of([&] { component.set(row.parameter, row.value); }), expected);
    EXPECT_EQ(component.parameters().at(row.parameter).get("") == row.value, row.fits);
    EXPECT_TRUE(component.parameters().at(row.parameter).type() == before);
  }
  EXPECT_EQ(error_of([&] { component.set("missing", number(1)); }), "EntryNameNotFound(missing)");
  EXPECT_EQ(error_of([&] { component.set("p", number(1)); }), "EntryTypeMismatch(p)");
}

TEST(Component, SettingAParameterDeepInsideLeavesCopiesAlone) {
  const Component original = divider();
  Component copy = original;
  copy.set("r2.R", number(7, "Ohm"));
  EXPECT_TRUE(original == divider());
  EXPECT_TRUE(copy.graph().components().at("r2").parameters().at("R").get("") == number(7, "Ohm"));
  EXPECT_EQ(&copy.graph().components().at("r1").parameters(), &original.graph().components().at("r1").parameters());
}

TEST(Component, ExportsMakeNodesConnectors) {
  Component component = divider();
  EXPECT_TRUE(component.isExported("left"));
  EXPECT_FALSE(component.isExported("middle"));
  EXPECT_EQ(component.mapExported("right"), kmf::VnId("b"));
  EXPECT_THAT(component.connectorOrder(), ElementsAre("a", "b"));
  const kmf::VnIdPath1 type("physical.electrical");
  EXPECT_EQ(error_of([&] { component.exportNode("nowhere", "c", type); }), "EntryNameNotFound(nowhere)");
  EXPECT_EQ(error_of([&] { component.exportNode("r1", "c", type); }), "EntryNameNotFound(r1)");
  EXPECT_EQ(error_of([&] { component.exportNode("left", "c", type); }), "DuplicateEntry(left)");
  EXPECT_EQ(error_of([&] { component.exportNode("middle", "a", type); }), "DuplicateEntry(a)");
  EXPECT_EQ(error_of([&] { component.mapExported("middle"); }), "EntryNameNotFound(middle)");
  EXPECT_EQ(error_of([&] { component.exportNode("middle", "gain", type); }), "") << "a parameter's id is free";
  EXPECT_EQ(error_of([] { resistor().exportNode("p", "q", "physical.electrical"); }), "EntryNameNotFound(p)");
}

TEST(Component, LeavesAndSubgraphsRefuseEachOthersOperations) {
  EXPECT_EQ(error_of([] { resistor().graph(); }), "EntryTypeMismatch()");
  EXPECT_EQ(error_of([] { divider().addConnector("c", "physical.electrical"); }), "EntryTypeMismatch(c)");
  EXPECT_EQ(error_of([] { resistor().addConnector("R", "physical.electrical"); }), "DuplicateEntry(R)");
  EXPECT_TRUE(Component(Graph(), {}).isSubgraph());
  EXPECT_FALSE(Component(Graph(), {}) == Component());
}

TEST(Component, OrderOfConnectorsCountsForLeavesAndNotForExports) {
  const auto leaf = [](std::vector<const char*> order) {
    Component component;
    for (const char* id : order) component.addConnector(id, "physical.electrical");
    return component;
  };
  EXPECT_FALSE(leaf({"p", "n"}) == leaf({"n", "p"}));

  const auto exporting = [](std::vector<std::pair<const char*, const char*>> exports) {
    Component component(divider().graph(), {{"gain", Parameter(number(2))}});
    for (const auto& row : exports) component.exportNode(row.first, row.second, "physical.electrical");
    return component;
  };
  EXPECT_TRUE(exporting({{"right", "b"}, {"left", "a"}}) == divider());
  EXPECT_FALSE(exporting({{"right", "a"}, {"left", "b"}}) == divider());
  EXPECT_FALSE(exporting({{"left", "a"}}) == divider());
}

TEST(Component, EqualityLooksAtTagsParametersAndTypes) {
  const auto changed = [](auto change) {
    Component component = resistor();
    change(component);
    return component;
  };
  EXPECT_TRUE(resistor() == changed([](Component&) {}));
  EXPECT_FALSE(resistor() == changed([](Component& c) { c.tag("note", text(u"x")); }));
  EXPECT_FALSE(resistor() == changed([](Component& c) { c.set("R", number(2)); }));
  EXPECT_FALSE(resistor() == changed([](Component& c) { c.addParameter("R", Parameter(number(1e3, "Ohm"))); }));
  EXPECT_FALSE(Component("physical.resistor") == Component("physical.capacitor"));
  EXPECT_FALSE(Component("physical.resistor") == Component());
}

TEST(RuntimeParameterInfo, HoldsValuesAndNamesWithoutValues) {
  RuntimeParameterInfo info;
  info.addParameter("k", 3.0);
  info.addParameter("c", 1.0);
  info.addNonValueParameter("s");
  EXPECT_THAT(info.runtimeParameters(), ElementsAre("c", "k"));
  EXPECT_THAT(info.nonValueParameters(), ElementsAre("s"));
  info.addParameter("k", 4.0);
  EXPECT_TRUE(info.value("k") == data2::core::ValueData(4.0));
  EXPECT_EQ(error_of([&] { info.value("s"); }), "EntryNameNotFound(s)");
}

}  // namespace
}  // namespace gl::core::test
