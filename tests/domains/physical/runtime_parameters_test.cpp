// Compiles that keep run-time parameters: what the expressions in the graph mean.

#include "embedded/block_diagram/host_functions.hpp"
#include "platform/data/data.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/domains/physical/expressions.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

#include <set>
#include <sstream>

namespace kinemo::physical::test {
namespace {

/// x at the top; Outer with k = 2*x; in it Inner with j = k+1 and the unused u = x; in that the resistor R of j*10+x
/// kOhm.
class RuntimeParameters : public PhysicalTest {
 protected:
  RuntimeParameters() {
    diagram->setVariable("x", u"3", "", true);
    diagram->setVariable("idle", u"3", "", true);
    GTBlock& outer = masked(diagram->root(), u"Outer", {maskParameter("k", u"2*x")});
    GTBlock& inner = masked(*bd::contents(outer), u"Inner", {maskParameter("j", u"k+1"), maskParameter("u", u"x")});
    GTBlock& resistor = bd::contents(inner)->addBlock(u"R", "physical/resistor");
    bd::setParameter(resistor, "R", u"j*10+x");
    bd::setParameter(resistor, "R_unit", u"kOhm");
    bd::setParameter(resistor, "R_conf", u"runtime");
    bd::contents(inner)->addBlock(u"Fixed", "physical/resistor");
    bd::setParameter(*diagram->findBlock(u"Outer/Inner/Fixed"), "R", u"j");
  }
  gl::core::Model compiled(const ustring& x, const ustring& setting) {
    diagram->setVariable("x", x, "", true);
    diagram->setParameter("PropagateRuntimeParameters", setting);
    return compile();
  }
  static const gl::core::Component& at(const gl::core::Graph& graph, const char* id) {
    return graph.components().at(id);
  }
  static ParameterVariant value(const gl::core::Component& component, const char* id) {
    return component.parameters().at(id).get({});
  }
  /// The resistance, worked out from the expressions of all levels.
  static double resistance(const gl::core::Model& model, double x) {
    const gl::core::Component& outer = at(model.graph(), "Outer");
    const Names top{{"x", x}};
    Names in = top;
    for (const auto& [id, parameter] : outer.parameters()) in[id] = valueOf(parameter.get({}), top);
    const gl::core::Component& inner = at(outer.graph(), "Inner");
    Names deep = in;
    for (const auto& [id, parameter] : inner.parameters()) deep[id] = valueOf(parameter.get({}), in);
    return valueOf(value(at(inner.graph(), "R"), "R"), deep);
  }
};

TEST_F(RuntimeParameters, StayNumbersUnlessTheModelAsks) {
  const gl::core::Model silent = compile();
  EXPECT_EQ(silent, compiled(u"3", u"off"));
  EXPECT_EQ(silent.runtimeParameters().runtimeParameters().size(), 2u);
  EXPECT_FALSE(silent == compiled(u"3", u"on"));
}

TEST_F(RuntimeParameters, BringAlongWhatTheirExpressionsNeed) {
  diagram->setVariable("c", u"int8(4)", "", false);
  diagram->setVariable("d", u"5", "", false);
  diagram->setVariable("word", u"'abc'", "", false);
  GTBlock& around =
      masked(diagram->root(), u"Around", {maskParameter("text", u"'ab'"), maskParameter("whole", u"int8(7)")});
  const auto resistor = [&](const char16_t* name, const ustring& text) {
    GTBlock& made = bd::contents(around)->addBlock(name, "physical/resistor");
    bd::setParameter(made, "R", text);
    bd::setParameter(made, "R_conf", u"runtime");
  };
  resistor(u"Needs", u"x*c");
  resistor(u"Plain", u"2*d");
  resistor(u"Half", u"whole/2");
  resistor(u"Long", u"numel(word)*x");
  resistor(u"Short", u"numel(text)*x");
  const gl::core::Model off = compiled(u"3", u"off");
  const gl::core::Model on = compiled(u"3", u"on");
  const auto inside = [](const gl::core::Model& model, const char* id) {
    return value(at(at(model.graph(), "Around").graph(), id), "R");
  };
  const auto shown = [](const ParameterVariant& variant) {
    std::ostringstream text;
    if (const auto* expression = boost::get<data2::core::Expr>(&variant)) data2::core::out(text, 0, 0, *expression);
    if (const auto* number = boost::get<data2::core::Value>(&variant)) text << number->data().elements().at(0);
    return text.str();
  };
  EXPECT_EQ(shown(inside(on, "Needs")), "kinemo.Value(x*c, 'Ohm')");
  EXPECT_EQ(on.runtimeParameters().runtimeParameters(), (std::set<kmf::VnId>{"c", "x"}));
  EXPECT_EQ(shown(inside(on, "Plain")), "10") << "nothing that may change";
  EXPECT_EQ(shown(inside(off, "Half")), "3.5") << "a graph knows doubles only";
  EXPECT_EQ(shown(inside(on, "Half")), "kinemo.Value(whole/2, 'Ohm')");
  for (const char* refused : {"Long", "Short"}) EXPECT_EQ(shown(inside(on, refused)), shown(inside(off, refused)));
  EXPECT_TRUE(take_warnings().empty());
  diagram->setParameter("InitializeInteractiveRuns", u"on");
  compile();
  EXPECT_EQ(take_warnings(), (std::vector<std::string>(2, "kinemo:common:gl:gti:rtp:InvalidNonValueReference")));
}

TEST_F(RuntimeParameters, ReachBlocksThroughMasks) {
  const gl::core::Model model = compiled(u"3", u"on");
  EXPECT_THAT(model.runtimeParameters().runtimeParameters(), testing::ElementsAre(kmf::VnId("x")));
  const gl::core::Component& outer = at(model.graph(), "Outer");
  EXPECT_EQ(plain(boost::get<data2::core::Expr>(value(outer, "k"))), plain(*data2::cvi::CorvaneParser()("2*x")));
  const gl::core::Component& inner = at(outer.graph(), "Inner");
  EXPECT_EQ(inner.parameters().count("u"), 0u);
  const auto resistance = boost::get<data2::core::Expr>(value(at(inner.graph(), "R"), "R"));
  EXPECT_EQ(data2::core::bound_unit(resistance).text(), "kOhm");
  EXPECT_EQ(number_of(at(inner.graph(), "Fixed"), "R").first, 7) << "its R_conf says compile time";
}

TEST_F(RuntimeParameters, ExpressionsMeanWhatAFreshCompileGives) {
  const gl::core::Model kept = compiled(u"3", u"on");
  for (const double x : {0.0, 3.0, -1.5, 1e6}) {
    const gl::core::Model fresh = compiled(kmf::utf8_string_to_ustring(std::to_string(x)), u"off");
    EXPECT_DOUBLE_EQ(resistance(kept, x), resistance(fresh, x)) << x;
  }
}

TEST_F(RuntimeParameters, NamesWithoutANumberAreToldInInteractiveRuns) {
  diagram->setVariable("word", u"'ab'", "", true);
  bd::setParameter(*diagram->findBlock(u"Outer/Inner/R"), "R", u"sum(word)+x");
  for (const char16_t* setting : {u"off", u"ON"}) {
    diagram->setParameter("InitializeInteractiveRuns", setting);
    EXPECT_FALSE(compiled(u"3", u"on") == compiled(u"3", u"off"));
    EXPECT_THAT(take_warnings(), testing::ElementsAre());
  }
  diagram->setParameter("InitializeInteractiveRuns", u"on");
  EXPECT_DOUBLE_EQ(resistance(compiled(u"3", u"on"), 8), 'a' + 'b' + 3.0) << "the number stays";
  EXPECT_THAT(take_warnings(), testing::ElementsAre("kinemo:common:gl:gti:rtp:InvalidNonValueReference"));
}

}  // namespace
}  // namespace kinemo::physical::test
