// What each bad parameter of a block ends in, seen through whole compiles.

#include "platform/foundation/strings.hpp"
#include "tests/domains/physical/expressions.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

namespace kinemo::physical::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The resistor R1 in the masked subsystem S, whose parameter is k = 3.
class BadParameters : public PhysicalTest {
 protected:
  BadParameters()
      : subsystem(masked(diagram->root(), u"S", {maskParameter("k", u"3")})),
        resistor(bd::contents(subsystem)->addBlock(u"R1", "physical/resistor")) {}

  void set(const ustring& R, const ustring& unit = u"Ohm") {
    bd::setParameter(resistor, "R", R);
    bd::setParameter(resistor, "R_unit", unit);
  }
  gl::core::Component compiled() { return byPath(compile().graph().components().at("S").graph()).at(u"m/S/R1"); }
  std::string rendered() {
    try {
      embedded::compile_layer::compile(*diagram);
    } catch (const kmf::Exception& error) {
      return kmf::render_error(error);
    }
    return {};
  }

  GTBlock& subsystem;
  GTBlock& resistor;
};

TEST_F(BadParameters, OfNumbersAreRefusedWithBlockParameterAndText) {
  struct Case {
    ustring text;
    std::string error;
  };
  for (const Case& c : {
           Case{u"NaN", "NotANumber(m/S/R1, R, NaN)"},
           Case{u"0/0", "NotANumber(m/S/R1, R, 0/0)"},
           Case{u"Inf", "Infinite(m/S/R1, R, Inf)"},
           Case{u"1e400", "Infinite(m/S/R1, R, 1e400)"},
           Case{u"-1e308*100", "Infinite(m/S/R1, R, -1e308*100)"},
           Case{u"1+2i", "NotNumeric(m/S/R1, R, 1+2i, complex double)"},
           Case{u"[]", "NotScalar(m/S/R1, R, [], 0x0)"},
           Case{u"[1 2]", "NotScalar(m/S/R1, R, [1 2], 1x2)"},
           Case{u"zeros(1000,1000)", "NotScalar(m/S/R1, R, zeros(1000,1000), 1000x1000)"},
           Case{u"'5'", "NotNumeric(m/S/R1, R, '5', char)"},
           Case{u"{5}", "NotNumeric(m/S/R1, R, {5}, cell)"},
           Case{u"@sin", "NotNumeric(m/S/R1, R, @sin, function_handle)"},
       }) {
    set(c.text);
    EXPECT_THAT(errors(), ElementsAre(c.error));
    diagram->setParameter("PropagateRuntimeParameters", u"on");
    EXPECT_THAT(errors(), ElementsAre(c.error));
    diagram->setParameter("PropagateRuntimeParameters", u"off");
  }
}

TEST_F(BadParameters, UnusualNumbersAreTaken) {
  struct Case {
    ustring text;
    double number;
  };
  for (const Case& c : {Case{u"true", 1}, Case{u"int8(3)", 3}, Case{u"single(0.5)", 0.5}, Case{u"-7", -7},
                        Case{u"1.7e308", 1.7e308}, Case{u"5e-324", 5e-324}, Case{u"[[4]]", 4}, Case{u"1+0i", 1}}) {
    set(c.text);
    EXPECT_EQ(number_of(compiled(), "R").first, c.number);
  }
}

TEST_F(BadParameters, LimitsMayBeInfiniteButNotNaN) {
  GTBlock& stop = place(u"H", "physical/translational_hard_stop");
  bd::setParameter(stop, "upper", u"Inf");
  bd::setParameter(stop, "lower", u"-Inf");
  EXPECT_THAT(errors(), IsEmpty());
  bd::setParameter(stop, "upper", u"NaN");
  bd::setParameter(stop, "k", u"Inf");
  EXPECT_THAT(errors(), ElementsAre("NotANumber(m/H, upper, NaN)"));
  bd::setParameter(stop, "upper", u"1");
  EXPECT_THAT(errors(), ElementsAre("Infinite(m/H, k, Inf)"));
}

TEST_F(BadParameters, ThatCannotBeEvaluatedAreToldWithBlockParameterTextAndPlace) {
  struct Case {
    ustring text;
    const char* place;
  };
  for (const Case& c : {Case{u"nix + 1", "Line 1, column 1"}, Case{u"1 + nix", "Line 1, column 5"},
                        Case{u"2*(", "Line 1, column 4"}, Case{u"[1 2]*[3 4]", "Line 1, column 6"},
                        Case{u"1 + sin(1,2,3)", "Line 1, column 5"}, Case{u"k.a", "Line 1, column"},
                        Case{u"zeros(1e6,1e6)", "Line 1, column 1"}, Case{u"[1;\n 2*nix]", "Line 2, column 4"}}) {
    set(c.text);
    EXPECT_THAT(rendered(), AllOf(HasSubstr("'R'"), HasSubstr("m/S/R1"), HasSubstr(c.place), HasSubstr("^"),
                                  HasSubstr(kmf::ustring_to_utf8_string(c.text).substr(0, 3))));
  }
  set(u"");
  EXPECT_THAT(rendered(), AllOf(HasSubstr("'R'"), HasSubstr("m/S/R1"), HasSubstr("empty")));
}

TEST_F(BadParameters, OfMasksAreToldOnceWithTheMask) {
  bd::setParameter(subsystem, "k", u"2*nix");
  set(u"k+1");
  EXPECT_THAT(rendered(), AllOf(HasSubstr("'k'"), HasSubstr("m/S"), HasSubstr("2*nix"), HasSubstr("Line 1, column 3"),
                                testing::Not(HasSubstr("k+1"))));
  bd::setParameter(subsystem, "k", u"[1 2]");
  EXPECT_THAT(errors(), ElementsAre("NotScalar(m/S/R1, R, k+1, 1x2)"));
  bd::setParameter(subsystem, "k", u"'ab'");
  set(u"k");
  EXPECT_THAT(errors(), ElementsAre("NotNumeric(m/S/R1, R, k, char)"));
}

TEST_F(BadParameters, UnitsAreRefusedWhereTheyDoNotFitTheKind) {
  diagram->setVariable("v", u"2", "V", false);
  struct Case {
    ustring R, unit;
    std::string error;
  };
  for (const Case& c : {
           Case{u"1", u"V", "UnitNotOfKind(m/S/R1, R, V, Ohm)"},
           Case{u"1", u"1", "UnitNotOfKind(m/S/R1, R, 1, Ohm)"},
           Case{u"1", u"degC", "UnitNotOfKind(m/S/R1, R, degC, Ohm)"},
           Case{u"1", u"Ohm/", "InvalidUnit(m/S/R1, R, Ohm/)"},
           Case{u"1", u"ohms per", "InvalidUnit(m/S/R1, R, ohms per)"},
           Case{u"1", ustring(300, u'm'), "InvalidUnit(m/S/R1, R, " + std::string(300, 'm') + ")"},
       }) {
    set(c.R, c.unit);
    EXPECT_THAT(errors(), ElementsAre(c.error));
  }
  GTBlock& gear = place(u"G", "physical/gear_box");
  bd::setParameter(gear, "ratio_unit", u"Ohm");
  set(u"1");
  EXPECT_THAT(errors(), ElementsAre("UnitNotOfKind(m/G, ratio, Ohm, 1)"));
  bd::setParameter(gear, "ratio_unit", u"percent");
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(BadParameters, WordsOfPartnersAreChecked) {
  set(u"5");
  bd::setParameter(resistor, "R_conf", u"runtme");
  EXPECT_THAT(errors(), ElementsAre("InvalidChoice(m/S/R1, R_conf, runtme, 'compiletime', 'runtime')"));
  bd::setParameter(resistor, "R_conf", u"");
  EXPECT_THAT(errors(), ElementsAre("InvalidChoice(m/S/R1, R_conf, , 'compiletime', 'runtime')"));
  bd::setParameter(resistor, "R_conf", u"RUNTIME");
  GTBlock& diode = place(u"D", "physical/exponential_diode");
  bd::setParameter(diode, "T_from", u"modl");
  EXPECT_THAT(errors(), ElementsAre(testing::StartsWith("InvalidChoice(")));
}

/// With run-time parameters kept: x = 3 at the top.
class ExpressionUnits : public BadParameters {
 protected:
  ExpressionUnits() {
    diagram->setParameter("PropagateRuntimeParameters", u"on");
    diagram->setVariable("x", u"3", "", true);
    bd::setParameter(resistor, "R_conf", u"runtime");
  }
  std::string boundUnit() {
    const ParameterVariant value = compiled().parameters().at("R").get({});
    return data2::core::bound_unit(boost::get<data2::core::Expr>(value)).text();
  }
};

TEST_F(ExpressionUnits, AreThoseOfTheBlockOrTheDeclaredOne) {
  for (const auto& [unit, bound] :
       std::map<ustring, std::string>{{u"kOhm", "kOhm"}, {u"", "Ohm"}, {u"  ", "Ohm"}, {u"Ohm", "Ohm"}}) {
    set(u"2*x", unit);
    EXPECT_EQ(boundUnit(), bound);
  }
}

TEST_F(ExpressionUnits, AreCheckedAsThoseOfNumbers) {
  set(u"2*x", u"s");
  EXPECT_THAT(errors(), ElementsAre("UnitNotOfKind(m/S/R1, R, s, Ohm)"));
  set(u"[x x]");
  EXPECT_THAT(errors(), ElementsAre("NotScalar(m/S/R1, R, [x x], 1x2)"));
  set(u"x/0");
  EXPECT_THAT(errors(), ElementsAre("Infinite(m/S/R1, R, x/0)"));
}

}  // namespace
}  // namespace kinemo::physical::test
