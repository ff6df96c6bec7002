// Variables with units on their way through masks to the parameters of parts.

#include "embedded/block_diagram/host_functions.hpp"
#include "platform/data/data.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/domains/physical/expressions.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

namespace kinemo::physical::test {
namespace {

/// R0 of 1 kOhm at the top; Outer with R = 2*R0; in it Middle with R = R, a time tau and a bare factor n; in that Inner
/// with R = n*R; in that the resistor Part of R under
/// R_unit Ohm.
class UnitsThroughMasks : public PhysicalTest {
 protected:
  UnitsThroughMasks() {
    diagram->setVariable("R0", u"1", "kOhm", true);
    diagram->setVariable("C0", u"5", "uF", false);
    GTBlock& outer = masked(diagram->root(), u"Outer", {maskParameter("R", u"2*R0"), maskParameter("C", u"C0")});
    GTBlock& middle = masked(*bd::contents(outer), u"Middle",
                             {maskParameter("R", u"R"), maskParameter("tau", u"R*C"), maskParameter("n", u"3")});
    GTBlock& inner = masked(*bd::contents(middle), u"Inner", {maskParameter("R", u"n*R"), maskParameter("t", u"tau")});
    bd::contents(inner)->addBlock(u"Part", "physical/resistor");
    bd::contents(inner)->addBlock(u"Store", "physical/capacitor");
    set("Part", "R", u"R");
    set("Part", "R_unit", u"Ohm");
    set("Part", "R_conf", u"runtime");
    set("Store", "C", u"t/R");
    set("Store", "C_unit", u"nF");
  }
  void set(const char* block, const char* parameter, const ustring& text) {
    bd::setParameter(*diagram->findBlock(u"Outer/Middle/Inner/" + kmf::utf8_string_to_ustring(block)), parameter, text);
  }
  static gl::core::Graph innermost(const gl::core::Model& model) {
    gl::core::Graph graph = model.graph();
    for (const char* level : {"Outer", "Middle", "Inner"}) graph = graph.components().at(level).graph();
    return graph;
  }
  gl::core::Model compiled(const char16_t* setting) {
    diagram->setParameter("PropagateRuntimeParameters", setting);
    return compile();
  }
};

using Number = std::pair<double, std::string>;

TEST_F(UnitsThroughMasks, PartsGetTheValueInTheirUnit) {
  const gl::core::Graph inside = innermost(compiled(u"off"));
  EXPECT_EQ(number_of(inside.components().at("Part"), "R"), Number(6000, "Ohm"));
  const Number capacity = number_of(inside.components().at("Store"), "C");  // 2 kOhm * 5 uF / 6 kOhm
  EXPECT_NEAR(capacity.first, 5000. / 3, 1e-9);
  EXPECT_EQ(capacity.second, "nF");
}

TEST_F(UnitsThroughMasks, ExpressionsThatStayAreBoundToTheUnitOfThePart) {
  const gl::core::Model model = compiled(u"on");
  const gl::core::Graph inside = innermost(model);
  const auto resistance = boost::get<data2::core::Expr>(inside.components().at("Part").parameters().at("R").get({}));
  EXPECT_EQ(data2::core::bound_unit(resistance).text(), "Ohm");
  const data2::core::ValueData& top = model.runtimeParameters().value(kmf::VnId("R0"));
  EXPECT_EQ(Number(top.elements().front(), top.unit().text()), Number(1, "kOhm"));
}

TEST_F(UnitsThroughMasks, AValueOfAnotherKindIsAnErrorOfThePart) {
  set("Part", "R", u"t");
  EXPECT_THAT(errors(), testing::ElementsAre(testing::AllOf(testing::HasSubstr("kOhm*uF"), testing::HasSubstr("Ohm"))));
}

}  // namespace
}  // namespace kinemo::physical::test
