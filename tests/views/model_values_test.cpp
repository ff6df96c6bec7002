#include "embedded/graph_core_scripting/model_values.hpp"

#include "platform/foundation/strings.hpp"
#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"
#include "tests/support/physical_environment.hpp"

#include <gmock/gmock.h>

namespace kinemo::views {
namespace {

using data2::core::ValueData;
using embedded::graph_core_scripting::changed_parameters;
using embedded::graph_core_scripting::ModelValues;
using embedded::graph_core_scripting::RuntimeValues;
using gl::core::Component;
using gl::core::Graph;
using gl::core::Parameter;
using kinemo::test::error_of;
using ::testing::HasSubstr;

units2::core::ExprString unit(const char* text) {
  return units2::core::parse(text);
}

ParameterVariant expression(const std::string& text) {
  return data2::cvi::CorvaneParser()(text).value();
}

ParameterVariant number(double value, const char* told = "") {
  return data2::core::Value(ValueData(value, unit(told)));
}

/// "5 Ohm"
std::string shown(const data2::core::Value& value) {
  std::string text;
  for (const double element : value.data().elements()) text += (text.empty() ? "" : ",") + std::to_string(element);
  return text + " " + value.data().unit().text();
}

Component leaf(const ParameterVariant& value) {
  Component made(kmf::VnIdPath1("test.block"));
  made.addParameter("m", Parameter(value));
  made.tag(gl::core::OBJECT(), ustring(u"m/B"));
  return made;
}

Component around(const Component& inside, const std::map<kmf::VnId, Parameter>& parameters) {
  Graph graph;
  graph.insert("B", inside);
  Component made(graph, parameters);
  made.tag(gl::core::OBJECT(), ustring(u"m/S"));
  return made;
}

/// The run-time parameters x = 3 mm, v = [1 2], speed = 1, and the component B.
gl::core::Model model_of(const Component& component) {
  Graph graph;
  graph.insert("B", component);
  gl::core::RuntimeParameterInfo info;
  info.addParameter("x", ValueData(3, unit("mm")));
  info.addParameter("speed", ValueData(1));
  info.addParameter("v", ValueData({1, 2}, {1, 2}));
  return gl::core::Model(graph, info);
}

class ModelValuesTest : public test::NoLeaks {
 protected:
  ModelValuesTest() { allow_kept_arrays(11); }  // standing arguments of the search for blocks

  static std::string value(const ParameterVariant& of, const RuntimeValues& changes = {}) {
    return shown(ModelValues(model_of(leaf(of)), changes).value("B", "m"));
  }

  embedded::Environment environment;
};

TEST_F(ModelValuesTest, UnitsAreBoundToNumbersAndConvertValuesThatHaveOne) {
  const auto bound = [](const std::string& text, const char* told) {
    return data2::core::Expr(data2::core::UnitBindExpr(boost::get<data2::core::Expr>(expression(text)),
                                                       units2::core::ExprString(unit(told))));
  };
  EXPECT_EQ(value(number(2, "V")), "2.000000 V");
  EXPECT_EQ(value(expression("2*x")), "6.000000 mm") << "variables bring their units along";
  EXPECT_EQ(value(bound("2*x", "cm")), "0.600000 cm");
  EXPECT_EQ(value(bound("[v 3]", "N")), "1.000000,2.000000,3.000000 N");
  EXPECT_EQ(value(bound("kinemo.Value(x, 'm')", "cm")), "0.300000 cm");
  EXPECT_THAT(error_of([&] { value(bound("kinemo.Value(x, 'm')", "s")); }), HasSubstr("ParameterNotEvaluated(m/B, m"));
}

TEST_F(ModelValuesTest, ChangesAreToldInTheDeclaredUnit) {
  const auto changed = [](const ValueData& to) { return value(expression("x"), {{"x", to}}); };
  EXPECT_EQ(changed(5), "5.000000 mm");
  EXPECT_EQ(changed(ValueData(5, unit("mm"))), "5.000000 mm");
  EXPECT_EQ(changed(ValueData(5, unit("m"))), "5000.000000 mm");
  EXPECT_EQ(error_of([&] { changed(ValueData(5, unit("V"))); }), "kinemo:graph:values:UnitsDiffer(x, V, mm)");
  EXPECT_EQ(error_of([&] {
              value(expression("v"), {{"v", ValueData(5, unit("V"))}});
            }),
            "kinemo:graph:values:UnitsDiffer(v, V, )");
  EXPECT_EQ(value(expression("v"), {{"v", ValueData(5, unit("m/mm"))}}), "5000.000000 ");
  EXPECT_EQ(error_of([] {
              value(number(1), {{"Sped", 1.0}});
            }),
            "kinemo:graph:values:UnknownRuntimeParameter(Sped, speed)");
  EXPECT_EQ(error_of([] {
              value(number(1), {{"no id", 1.0}});
            }),
            "kinemo:graph:values:UnknownRuntimeParameter(no id, )");
  const ModelValues values(model_of(leaf(number(1))), {{"x", ValueData(1, unit("m"))}});
  EXPECT_EQ(values.runtimeParameters().value("x"), ValueData(1000, unit("mm")));
}

TEST_F(ModelValuesTest, NamesMeanTheInnermostParameter) {
  // x + 1 inside S(k = 10*x, x = 2*x) inside T(x = x + 1), with x = 3 at the top
  const Component inner = around(leaf(expression("x + k + 1")),
                                 {{"k", Parameter(expression("10*x"))}, {"x", Parameter(expression("2*x"))}});
  const Component outer = around(inner, {{"x", Parameter(expression("x + 1"))}});
  ModelValues values(model_of(outer));
  EXPECT_EQ(shown(values.value("B.B.B", "m")), "49.000000 mm");
  EXPECT_EQ(shown(values.value("B.B", "k")), "40.000000 mm");
  EXPECT_EQ(shown(values.value("B", "x")), "4.000000 mm");
  EXPECT_EQ(shown(values.value("B.B.B", "m")), "49.000000 mm");
  EXPECT_EQ(error_of([&] { values.value("B.none.B", "m"); }), "kinemo:graph:core:EntryNameNotFound(B.none.B)");
  EXPECT_EQ(error_of([&] { values.value("B.B.B.B", "m"); }), "kinemo:graph:core:EntryTypeMismatch(B.B.B.B)");
  EXPECT_EQ(error_of([&] { values.value("", "m"); }), "kinemo:graph:core:EntryTypeMismatch()");
  EXPECT_EQ(error_of([&] { values.value("B.B.B", "n"); }), "kinemo:graph:core:EntryNameNotFound(n)");
  EXPECT_EQ(shown(values.value("B.B.B", "m")), "49.000000 mm") << "after errors";
}

TEST_F(ModelValuesTest, ErrorsNameBlockAndParameter) {
  EXPECT_EQ(error_of([] { value(ustring(u"text")); }), "kinemo:graph:values:ParameterIsText(m/B, m)");
  ModelValues values(model_of(around(leaf(expression("x + c")), {{"k", Parameter(expression("sqrt(-speed)"))}})));
  try {
    values.evaluated();
    FAIL() << "complex numbers have no place in a model";
  } catch (const kmf::Exception& error) {
    const kmf::ErrorData data = error.data();
    EXPECT_EQ(data.arguments, (std::vector<std::string>{"m/S", "k", "sqrt(-speed)"}));
    EXPECT_EQ(data.objects, std::vector<std::string>{"m/S"});
    EXPECT_EQ(data.causes.at(0).id, "CannotConvert");
  }
  try {
    values.value("B.B", "m");
    FAIL() << "the model doesn't hold c";
  } catch (const kmf::Exception& error) {
    EXPECT_EQ(error.data().objects, std::vector<std::string>{"m/B"});
    EXPECT_EQ(error.data().causes.at(0).id, "UndefinedName");
  }
}

TEST_F(ModelValuesTest, TextsHideNamesAndCannotBeUsed) {
  const std::map<kmf::VnId, Parameter> mask{{"x", Parameter(ustring(u"text"))}};
  ModelValues values(model_of(around(leaf(expression("x + 1")), mask)));
  EXPECT_EQ(error_of([&] { values.value("B.B", "m"); }), "kinemo:graph:values:ParameterNotEvaluated(m/B, m, x + 1)");
  EXPECT_EQ(error_of([&] { values.value("B", "x"); }), "kinemo:graph:values:ParameterIsText(m/S, x)");
  const Component shown_again = around(around(leaf(expression("x + 1")), {{"x", Parameter(expression("v(1)"))}}), {});
  EXPECT_EQ(shown(ModelValues(model_of(shown_again)).value("B.B.B", "m")), "2.000000 ");
}

TEST_F(ModelValuesTest, EvaluatedGraphsKeepAllElse) {
  Component subgraph = around(leaf(expression("k")), {{"k", Parameter(expression("2*x"))}});
  Graph inside = subgraph.graph();
  inside.insert("N1", gl::core::Node());
  inside.insert("N2", gl::core::Node());
  Component whole(inside, subgraph.parameters());
  whole.tag("note", ustring(u"kept"));
  whole.exportNode("N2", "c1", kmf::VnIdPath1("test.port"));
  whole.exportNode("N1", "c2", kmf::VnIdPath1("test.other"));
  const gl::core::Model model = model_of(whole);
  std::vector<std::string> told;
  ModelValues values(model);
  const Graph evaluated = values.evaluated();
  const Component& made = evaluated.components().at("B");
  EXPECT_EQ(made.connectorOrder(), whole.connectorOrder());
  EXPECT_EQ(made.mapExported("N1"), kmf::VnId("c2"));
  EXPECT_EQ(boost::get<ustring>(made.tag("note")), u"kept");
  EXPECT_TRUE(made.parameters().at("k").get({}) == number(6, "mm"));
  EXPECT_EQ(ModelValues(gl::core::Model(evaluated, {})).evaluated(), evaluated);
  values.visit([&](const Component& component, const kmf::VnId& parameter, const ParameterVariant& value) {
    told.push_back((component.isSubgraph() ? "subgraph " : "leaf ") + std::string(parameter) + " " +
                   shown(boost::get<data2::core::Value>(value)));
  });
  EXPECT_EQ(told, (std::vector<std::string>{"subgraph k 6.000000 mm", "leaf m 6.000000 mm"}));
}

TEST_F(ModelValuesTest, DepthDoesNotMatter) {
  constexpr int levels = 10'000;
  Component inside = leaf(expression("k"));
  for (int i = 0; i < levels; ++i)
    inside = around(inside, {{"k", Parameter(expression(i + 1 < levels ? "k+1" : "x"))}});
  ModelValues values(model_of(inside), {{"x", 5.0}});
  std::string last;
  values.visit([&](const Component& component, const kmf::VnId&, const ParameterVariant& value) {
    if (!component.isSubgraph()) last = shown(boost::get<data2::core::Value>(value));
  });
  EXPECT_EQ(last, std::to_string(5.0 + levels - 1) + " mm");
  EXPECT_EQ(values.evaluated().components().size(), 1u);
}

}  // namespace
}  // namespace kinemo::views
