#include "common/gl/gti/src/kernel/parameters/component_rewriting.hpp"

#include "common/gl/gti/src/kernel/parameters/runtime_propagation.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/kernel/parameters/propagation_fixture.hpp"
#include "tests/support/errors.hpp"

#include <stdexcept>

namespace gl::gti::test {
namespace {

using ::testing::ElementsAre;

class ComponentRewriting : public Propagation {};

TEST_F(ComponentRewriting, TextsBecomeExpressionsWhereTheyMeanARuntimeName) {
  struct Case {
    const char16_t* text;
    bool becomes;
  };
  const Case cases[] = {{u"2*x", true},   {u"", false},      {u"2*y", false}, {u"{x}", false},
                        {u"2*(x", false}, {u"x(1)+y", true}, {u"7", false}};
  Entry& block = entry(u"m/B");
  for (const Case& test : cases) {
    block.value("m", 7, test.text);
    const std::string text = kmf::ustring_to_utf8_string(test.text);
    EXPECT_EQ(rewritten(), test.becomes ? shown(expression(text)) : "7") << text;
  }
  block.text("m", "x");
  EXPECT_EQ(rewritten(), "7") << "the text of a character array is no expression";
  entry(u"m/F", false).value("m", 7, u"x");
  EXPECT_EQ(valueOf(propagate_component(leaf(u"m/F"), entries, {"x"}, {}, true).component, "m"), "7");
}

TEST_F(ComponentRewriting, UnitsStandInPartners) {
  Entry& block = entry(u"m/B");
  const auto unit = [&block](const char* id) { return unit_of_parameter(id, block.data().parameters()); };
  block.text("m_unit", "kg");
  block.text("a_nominal_unit", "m");
  block.text("a_nominal_value_unit", "s");
  block.text("a_nominal_value", "1");
  block.value("n_unit", 1, u"1");
  EXPECT_EQ(unit("m").value_or(""), "kg");
  EXPECT_EQ(unit("a_nominal_value").value_or(""), "m");
  block.text("z_nominal_value_unit", "s");
  for (const char* id : {"b_nominal_value", "z_nominal_value"}) EXPECT_FALSE(unit(id)) << id;
  EXPECT_FALSE(unit("n")) << "a unit is a text";
  block.value("m", 7, u"x+1");
  EXPECT_EQ(rewritten(), bound("x+1", "kg"));
  block.text("m_unit", "");
  EXPECT_EQ(rewritten(), shown(expression("x+1")));
  block.text("m_unit", "no unit!");
  EXPECT_THAT(kinemo::test::error_of([&] { rewritten(); }), ::testing::HasSubstr("InvalidUnit"));
}

TEST_F(ComponentRewriting, LookUpsThatFailAreErrors) {
  try {
    rewritten();
    FAIL() << "a component without a block";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "invalid map<K, T> key");
  }
  entry(u"m/B").value("m", 7, u"x");
  EXPECT_THROW(parameter_rewrites(leaf(u"m/B"), entries, {"x"}, {}, UnitLookup()), std::bad_function_call);
  EXPECT_TRUE(parameter_rewrites(leaf(u"m/B"), entries, {}, {}, UnitLookup()).empty()) << "no unit is looked up";
}

TEST_F(ComponentRewriting, NamesWithoutAValueAreRefusedAndTold) {
  Component odd = leaf(u"m/a\nb");
  entry(u"m/a\nb").value("m", 7, u"x + bad + worse");
  const auto rewrite = [&](bool warn) { return propagate_component(odd, entries, {"x"}, {"bad", "worse"}, warn); };
  EXPECT_EQ(valueOf(rewrite(false).component, "m"), "7");
  EXPECT_THAT(take_warnings(), ElementsAre());
  const ComponentRewrite refused = rewrite(true);
  EXPECT_EQ(refused.component, odd);
  EXPECT_TRUE(refused.used.empty());
  const std::vector<kmf::Message> warnings = take_warning_messages();
  ASSERT_EQ(warnings.size(), 1u);
  const kmf::MessageId& id = warnings[0].identifier();
  EXPECT_EQ(id.group + ":" + id.id, "kinemo:common:gl:gti:rtp:InvalidNonValueReference");
  ASSERT_EQ(id.arguments.size(), 3u);
  EXPECT_EQ(kmf::argument_text(id.arguments[0]), "m/a b");
  EXPECT_EQ(kmf::argument_text(id.arguments[1]), "m");
  kmf::VnId last;
  for (const kmf::VnId& name : data2::core::UsedIds()(expression("x + bad + worse")))
    last = name == kmf::VnId("x") ? last : name;
  EXPECT_EQ(kmf::argument_text(id.arguments[2]), std::string(last));
  EXPECT_THAT(warnings[0].text(), ::testing::HasSubstr("m/a b"));
}

TEST_F(ComponentRewriting, BlocksMaySetWhatTheirParametersTake) {
  struct Case {
    const char* path;
    ParameterVariant value;
    std::string error;
  };
  const std::string core = "kinemo:graph:core:";
  const Case cases[] = {
      {"m", ustring(u"bad"), ""},  // a text is no expression, whatever it says
      {"m", number(3), ""},
      {"n", number(3), ""},
      {"n", expression("x"), ""},
      {"n", ustring(u"x"), core + "ParameterTypeMismatch(n)"},
      {"other", number(3), core + "EntryNameNotFound(other)"},
      {"m.n", number(3), "kinemo:foundation:identifiers:InvalidIdentifier(m.n)"},
  };
  Entry& block = entry(u"m/B");
  block.value("m", 7, u"x");
  Component before = leaf(u"m/B");
  before.addParameter("n", Parameter(number(7), gl::core::ParameterType::number({})));
  Graph graph;
  graph.insert(kmf::VnId("B"), before);
  for (const Case& test : cases) {
    block.apply = [&](const ParameterSetter& set) { set(kmf::VnIdPath1(test.path), test.value); };
    Graph made = graph;
    const auto propagate = [&] { made = propagate_graph(graph, entries, {"x"}, {"bad"}, true).graph; };
    EXPECT_EQ(kinemo::test::error_of(propagate), test.error) << test.path;
    Component expected = before;
    if (test.error.empty()) expected.set(test.path, test.value);
    EXPECT_EQ(made.components().at("B"), expected) << test.path;
  }
}

}  // namespace
}  // namespace gl::gti::test
