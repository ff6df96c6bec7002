#include "common/gl/gti/src/kernel/parameters/runtime_propagation.hpp"

#include "tests/kernel/parameters/propagation_fixture.hpp"

namespace gl::gti::test {
namespace {

using ::testing::ElementsAre;

/// x at the top; S with k = 2*x and the unused j = x; in it B with m = k+1 in kg.
TEST_F(Propagation, MasksCarryNamesDown) {
  Entry& mask = entry(u"m/S");
  mask.value("k", 6, u"2*x");
  mask.value("j", 3, u"x");
  Entry& block = entry(u"m/S/B");
  block.value("m", 7, u"k+1");
  block.text("m_unit", "kg");
  Graph graph;
  graph.insert(kmf::VnId("S"),
               subgraph(u"m/S", leaf(u"m/S/B"), {{"k", Parameter(number(6))}, {"j", Parameter(number(3))}}));
  gl::core::RuntimeParameterInfo info;
  info.addParameter("x", data2::core::ValueData(3.0));
  info.addParameter("unused", data2::core::ValueData(1.0));
  info.addNonValueParameter("bad");

  const PropagationResult result = propagate_runtime_parameters(graph, entries, info, true);
  const Component& made = result.graph.components().at("S");
  ASSERT_EQ(made.parameters().size(), 1u) << "nothing uses j";
  EXPECT_EQ(valueOf(made, "k"), shown(expression("2*x")));
  EXPECT_EQ(gl::core::object(made), u"m/S");
  EXPECT_EQ(valueOf(made.graph().components().at("B"), "m"), bound("k+1", "kg"));
  EXPECT_THAT(result.info.runtimeParameters(), ElementsAre(kmf::VnId("x")));
  EXPECT_TRUE(result.info.value("x") == data2::core::ValueData(3.0));
  EXPECT_TRUE(result.info.nonValueParameters().empty());
  EXPECT_EQ(propagate_graph(graph, entries, {"x"}, {}, true).used, IdSet{"x"});

  const PropagationResult none = propagate_runtime_parameters(graph, entries, {}, true);
  EXPECT_TRUE(none.info == gl::core::RuntimeParameterInfo());
  EXPECT_EQ(valueOf(none.graph.components().at("S"), "k"), "6") << "inside, every mask parameter is a name";
}

TEST_F(Propagation, MaskParametersHideOuterNames) {
  entry(u"m/S").value("x", 6, u"5");
  entry(u"m/S/B").value("m", 7, u"x+1");
  const Component around = subgraph(u"m/S", leaf(u"m/S/B"), {{"x", Parameter(number(5))}});
  const auto used = [&](const Component& component, const IdSet& runtime, const IdSet& nonValue) {
    return propagate_subgraph(component, entries, runtime, nonValue, true).used;
  };
  EXPECT_EQ(used(around, {"x"}, {}), IdSet{}) << "the top-level x is hidden";
  EXPECT_EQ(used(around, {}, {"x"}), IdSet{}) << "no warning: the x inside has a value";
  entry(u"m/T");
  entry(u"m/T/B").value("m", 7, u"x+1");
  for (const Parameter& held : {Parameter(ustring(u"text")), Parameter(expression("y"))}) {
    const Component open = subgraph(u"m/T", leaf(u"m/T/B"), {{"x", held}});
    const auto inside = [&](const IdSet& runtime, const IdSet& nonValue) {
      const ComponentRewrite made = propagate_subgraph(open, entries, runtime, nonValue, true);
      return valueOf(made.component.graph().components().at("B"), "m");
    };
    EXPECT_EQ(inside({"x"}, {}), shown(expression("x+1"))) << "only a value hides";
    EXPECT_EQ(inside({"y"}, {}), "7") << "and only a value is a name inside";
    EXPECT_EQ(inside({}, {"x"}), "7");
    EXPECT_THAT(take_warnings(), ElementsAre("kinemo:common:gl:gti:rtp:InvalidNonValueReference"));
  }
  static_cast<Entry&>(*entries.at(u"m/S")).value("x", 6, u"2*x");
  EXPECT_EQ(used(around, {"x"}, {}), IdSet{"x"}) << "a mask's x made of the x outside";
}

TEST_F(Propagation, MasksLoseTheirTypeWithTheirValue) {
  entry(u"m/S").value("k", 6, u"2*x");
  entry(u"m/T");
  for (const char16_t* path : {u"m/S/B", u"m/T/B"}) entry(path).value("m", 7, u"k+1");
  const Parameter masks[] = {Parameter(number(6)), Parameter(number(6), gl::core::ParameterType::number({})),
                             Parameter(ustring(u"text")), Parameter(ustring(u"text"), gl::core::ParameterType::text())};
  for (const Parameter& held : masks) {
    const auto rewrite = [&](const char16_t* path, const char16_t* inside) {
      return propagate_subgraph(subgraph(path, leaf(inside), {{"k", held}}), entries, {"k", "x"}, {}, true);
    };
    const ComponentRewrite changed = rewrite(u"m/S", u"m/S/B");
    EXPECT_TRUE(changed.component.parameters().at("k") == Parameter(expression("2*x")));
    EXPECT_EQ(changed.used, IdSet{"x"});
    const ComponentRewrite kept = rewrite(u"m/T", u"m/T/B");
    EXPECT_TRUE(kept.component.parameters().at("k") == held) << "without a text of its own";
    EXPECT_EQ(kept.used, IdSet{});
  }
}

TEST_F(Propagation, MasksThatMeanNamesWithoutAValueKeepTheirNumber) {
  entry(u"m/a\nS").value("k", 6, u"bad*x");
  entry(u"m/S/B").value("m", 7, u"k");
  const Component around = subgraph(u"m/a\nS", leaf(u"m/S/B"), {{"k", Parameter(number(6))}});
  const auto rewrite = [&](bool warn) { return propagate_subgraph(around, entries, {"x"}, {"bad"}, warn); };
  const ComponentRewrite quiet = rewrite(false);
  EXPECT_THAT(take_warnings(), ElementsAre());
  EXPECT_EQ(rewrite(true).component, quiet.component);
  EXPECT_EQ(valueOf(quiet.component, "k"), "6");
  EXPECT_TRUE(quiet.used.empty());
  const std::vector<kmf::Message> warnings = take_warning_messages();
  ASSERT_EQ(warnings.size(), 1u);
  std::vector<std::string> texts{warnings[0].identifier().id};
  for (const auto& argument : warnings[0].identifier().arguments) texts.push_back(kmf::argument_text(argument));
  EXPECT_THAT(texts, ElementsAre("InvalidNonValueReferenceMask", "m/a S", "k", "bad"));
  EXPECT_THAT(warnings[0].text(), ::testing::HasSubstr("m/a S"));
}

TEST_F(Propagation, NetsExportsAndTagsStayAsTheyWere) {
  entry(u"m/B");
  entry(u"m/S");
  entry(u"m/S/B");
  const auto joined = [](const char16_t* path) {
    Component made = leaf(path);
    for (const char* port : {"p", "n"}) made.addConnector(port, kmf::VnIdPath1("test.line"));
    return made;
  };
  Graph inside;
  inside.insert(kmf::VnId("B"), joined(u"m/S/B"));
  for (const char* node : {"N1", "N2"}) inside.insert(kmf::VnId(node), gl::core::Node());
  inside.insert(gl::core::Connection("N1", {"B", "p"}), {});
  inside.insert(gl::core::Connection("N2", {"B", "n"}), {});
  Component around(inside, {{"k", Parameter(number(6))}});
  around.exportNode("N1", "in", kmf::VnIdPath1("test.line"));
  around.tag(gl::core::OBJECT(), ustring(u"m/S"));
  Graph graph;
  graph.insert(kmf::VnId("B"), joined(u"m/B"));
  graph.insert(kmf::VnId("N"), gl::core::Node());
  const auto with = [&graph](const Component& subgraph) {
    Graph whole = graph;
    whole.insert(kmf::VnId("S"), subgraph);
    whole.insert(gl::core::Connection("N", {"B", "p"}), {});
    whole.insert(gl::core::Connection("N", {"S", "in"}), {});
    return whole;
  };
  Component without(inside, {});
  without.exportNode("N1", "in", kmf::VnIdPath1("test.line"));
  without.tag(gl::core::OBJECT(), ustring(u"m/S"));
  EXPECT_TRUE(propagate_runtime_parameters(with(around), entries, {}, true).graph == with(without))
      << "only the mask parameter that nothing uses is gone";
}

TEST_F(Propagation, NamesOfASubgraphEndWithIt) {
  for (const char16_t* path : {u"m/A", u"m/A/B", u"m/Z"}) entry(path);
  static_cast<Entry&>(*entries.at(u"m/A/B")).value("m", 7, u"k+bad");
  static_cast<Entry&>(*entries.at(u"m/Z")).value("m", 7, u"k+x");
  Graph graph;
  graph.insert(kmf::VnId("A"),
               subgraph(u"m/A", leaf(u"m/A/B"), {{"k", Parameter(number(1))}, {"bad", Parameter(number(1))}}));
  graph.insert(kmf::VnId("Z"), leaf(u"m/Z"));
  const auto behind = [&](const char16_t* text) {
    static_cast<Entry&>(*entries.at(u"m/Z")).value("m", 7, text);
    return valueOf(propagate_graph(graph, entries, {"x"}, {"bad"}, true).graph.components().at("Z"), "m");
  };
  EXPECT_EQ(behind(u"2*k"), "7") << "the mask parameter of a neighbour is no name here";
  EXPECT_TRUE(take_warnings().empty());
  EXPECT_EQ(behind(u"x*bad"), "7");
  EXPECT_EQ(take_warnings().size(), 1u) << "hidden in the neighbour only";
}

TEST_F(Propagation, OnlyWhatIsKeptCountsAsUsed) {
  entry(u"m/S").value("k", 6, u"2*x");
  entry(u"m/S/B", false);
  const Component around = subgraph(u"m/S", leaf(u"m/S/B"), {{"k", Parameter(number(6))}});
  EXPECT_TRUE(propagate_subgraph(around, entries, {"x"}, {}, true).used.empty()) << "k goes, and x with it";
  Component made = leaf(u"m/S/B");
  made.set("m", expression("3*k"));
  const ComponentRewrite kept =
      propagate_subgraph(subgraph(u"m/S", made, {{"k", Parameter(number(6))}}), entries, {"x"}, {}, true);
  EXPECT_EQ(kept.used, IdSet{"x"}) << "an expression of the block's own factory needs k";
  EXPECT_EQ(valueOf(kept.component, "k"), shown(expression("2*x")));
}

TEST_F(Propagation, VariablesMayHideConstantsAndFunctions) {
  entry(u"m/S").value("pi", 6, u"2*x");
  entry(u"m/S/B").value("m", 7, u"pi*max(2)");
  const Component around =
      subgraph(u"m/S", leaf(u"m/S/B"), {{"pi", Parameter(number(6))}, {"max", Parameter(number(6))}});
  const ComponentRewrite rewrite = propagate_subgraph(around, entries, {"x"}, {}, true);
  EXPECT_EQ(rewrite.component.parameters().size(), 2u);
  EXPECT_EQ(rewrite.used, IdSet{"x"});
  entry(u"m/B").value("m", 7, u"2*eps");
  EXPECT_EQ(propagate_component(leaf(u"m/B"), entries, {"eps"}, {}, true).used, IdSet{"eps"});
}

TEST_F(Propagation, WhatStaysIsShared) {
  entry(u"m/S");
  entry(u"m/S/B").value("m", 7, u"5");
  entry(u"m/T");
  entry(u"m/T/B").value("m", 7, u"x");
  Graph graph;
  graph.insert(kmf::VnId("S"), subgraph(u"m/S", leaf(u"m/S/B"), {}));
  graph.insert(kmf::VnId("T"), subgraph(u"m/T", leaf(u"m/T/B"), {}));
  const Graph none = propagate_graph(graph, entries, {"y"}, {}, true).graph;
  EXPECT_EQ(&none.components(), &graph.components());
  const Graph made = propagate_graph(graph, entries, {"x"}, {}, true).graph;
  EXPECT_EQ(&made.components().at("S").graph().components(), &graph.components().at("S").graph().components());
  EXPECT_EQ(valueOf(made.components().at("T").graph().components().at("B"), "m"), "x");
  EXPECT_EQ(valueOf(graph.components().at("T").graph().components().at("B"), "m"), "7");
}

TEST_F(Propagation, NamesReachThroughManyLevels) {
  constexpr int depth = 10000;
  entry(u"m/S").value("k", 6, u"k+1");
  entry(u"m/B").value("m", 7, u"k");
  Component inner = leaf(u"m/B");
  for (int i = 0; i < depth; ++i) inner = subgraph(u"m/S", inner, {{"k", Parameter(number(6))}});
  Graph graph;
  graph.insert(kmf::VnId("S"), inner);
  EXPECT_EQ(propagate_graph(graph, entries, {"k"}, {}, true).used, IdSet{"k"});
  EXPECT_EQ(propagate_graph(graph, entries, {}, {}, true).used, IdSet{});
}

}  // namespace
}  // namespace gl::gti::test
