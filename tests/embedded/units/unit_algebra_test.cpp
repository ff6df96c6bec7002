// Products, quotients and powers of units.

#include "platform/foundation/exception.hpp"
#include "platform/units/units.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace units2::core {
namespace {

const std::string& text_of(const AbstractExpr& unit) {
  static std::string text;
  return text = ExprString(unit).text();
}

std::string error_of(const std::function<void()>& f) {
  try {
    f();
    return {};
  } catch (const kmf::MessageException& error) {
    EXPECT_EQ(error.message().identifier().group, "kinemo:units:core");
    return error.message().identifier().id + ":" + kmf::argument_text(error.message().identifier().arguments.at(0));
  }
}

TEST(UnitAlgebra, TextsAreComposedOfTextsAndParseBackToTheSameUnit) {
  const struct {
    const char* a;
    char op;  ///< ^ raises to the second
    const char* b;
    const char* text;
  } table[] = {
      {"kOhm", '*', "F", "kOhm*F"},
      {"m", '/', "s", "m/s"},
      {"kOhm*F", '^', "", "(kOhm*F)^2"},
      {"kOhm", '*', "kOhm", "kOhm^2"},
      {"(kOhm*F)^2", '/', "F", "kOhm^2*F"},
      {"N*m/(rad/s)", '*', "rad/s", "N*m"},  // what cancels is gone
      {"kOhm", '/', "kOhm", "1"},
      {"kOhm", '/', "Ohm", "kOhm/Ohm"},
      {"", '/', "Ohm", "1/Ohm"},
      {"1", '/', "m*s", "1/(m*s)"},
      {"1/(m*s)", '^', "", "1/(m*s)^2"},
      {"m/s", '^', "", "(m/s)^2"},
      {"(m/s)^2", '*', "kg", "m^2*kg/s^2"},
      {"W", '/', "m^2*K", "W/(m^2*K)"},
      {"m/s kg", '*', "s2", "m*s*kg"},  // juxtaposition and bare exponents as the database reads them
      {"1000 Ohm", '*', "F", "(1000 Ohm)*F"},
      {"(1000 Ohm)*F", '/', "1000 Ohm", "F"},
      {"(1000 Ohm)^2", '/', "(1000 Ohm)", "(1000 Ohm)"},
      {"degC/W", '*', "W", "K"},  // degC would have an offset
      {"W/degF", '/', "W", "1/degR"},
      {"W/(0.5 K @ 3)", '/', "W", "1/(0.5 K)"},
      {"m\u00b2", '*', "m", "(m\u00b2)*m"},
      {"\u00b5F", '*', "\u03a9", "\u00b5F*\u03a9"},
      {"1e3 Ohm", '*', "F", "(1e3 Ohm)*F"},  // e is a unit, too
      {"%", '*', "kOhm", "%*kOhm"},
      {"", '*', "", ""},
      {"1", '*', "V", "V"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(std::string(row.a) + ' ' + row.op + ' ' + row.b);
    const AbstractExpr a = parse(row.a), b = parse(row.b);
    const AbstractExpr made = row.op == '*' ? product(a, b) : row.op == '/' ? quotient(a, b) : power(a, 2);
    EXPECT_EQ(text_of(made), row.text);
    EXPECT_EQ(made, parse(text_of(made)));
    const double size_a = 3, size_b = row.op == '^' ? 3 : 5;  // the sizes multiply as the units do
    const AbstractExpr base = base_unit(made), base_a = base_unit(a), base_b = base_unit(row.op == '^' ? a : b);
    const double in_a = convert(size_a, a, base_a), in_b = convert(size_b, row.op == '^' ? a : b, base_b);
    const double expected = row.op == '/' ? in_a / in_b : in_a * in_b;
    const double told = row.op == '/' ? size_a / size_b : size_a * size_b;
    EXPECT_NEAR(convert(told, made, base) / expected, 1, 1e-12);
  }
}

TEST(UnitAlgebra, LawsOfPhysicsHold) {
  const auto unit = [](const char* text) { return parse(text); };
  const struct {
    AbstractExpr made;
    const char* same;
    double factor;
  } table[] = {
      {product(unit("V"), unit("A")), "W", 1},
      {product(unit("kOhm"), unit("uF")), "ms", 1},
      {quotient(unit("V"), unit("mA")), "kOhm", 1},
      {power(product(unit("mH"), unit("nF")), 1, 1), "s^2", 1e-12},
      {product(unit("N*m"), unit("rad/s")), "W", 1},
      {quotient(unit("kWh"), unit("h")), "kW", 1},
      {product(unit("kg"), power(unit("km/h"), 2)), "J", 1 / 12.96},
      {power(unit("Hz"), -1), "s", 1},
      {power(unit("kOhm^2"), 1, 2), "kOhm", 1},
      {power(unit("m^6"), 2, 3), "m^4", 1},
      {power(unit("m"), 0), "1", 1},
      {base_unit(unit("kWh")), "J", 1},
      {base_unit(unit("degC")), "K", 1},
      {base_unit(unit("deg")), "rad", 1},
      {difference_unit(unit("degF")), "degR", 1},
      {difference_unit(unit("degC")), "K", 1},
      {difference_unit(unit("0.5 K @ 10")), "mK", 500},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(text_of(row.made));
    ASSERT_TRUE(commensurable(row.made, unit(row.same)));
    EXPECT_NEAR(convert(1, row.made, unit(row.same)) / row.factor, 1, 1e-12);
  }
}

TEST(UnitAlgebra, TheOrderOfFactorsMattersForTheTextAlone) {
  const char* const texts[] = {"kOhm", "m/s^2", "1000 Ohm", "deg", "%", "lbm", "W/(m^2*K)", "\u00b5F"};
  for (const char* a : texts) {
    for (const char* b : texts) {
      SCOPED_TRACE(std::string(a) + " and " + b);
      const AbstractExpr ab = product(parse(a), parse(b)), ba = product(parse(b), parse(a));
      EXPECT_NEAR(convert(1, ab, ba), 1, 1e-12);
      EXPECT_NEAR(convert(1, quotient(ab, parse(b)), parse(a)), 1, 1e-12);
      EXPECT_EQ(text_of(quotient(ab, ba)), "1");
      EXPECT_EQ(power(power(ab, 2), 1, 2), ab);
    }
  }
}

TEST(UnitAlgebra, OffsetUnitsAreNoFactors) {
  const AbstractExpr celsius = parse("degC"), watt = parse("W");
  EXPECT_TRUE(has_offset(celsius));
  EXPECT_TRUE(has_offset(parse("degF")));
  EXPECT_TRUE(has_offset(parse("lg(re 1 mW)")));
  for (const char* text : {"", "1", "K", "degR", "degC/W", "kOhm"}) EXPECT_FALSE(has_offset(parse(text))) << text;
  EXPECT_EQ(error_of([&] { product(celsius, watt); }), "OffsetUnitInProduct:degC");
  EXPECT_EQ(error_of([&] { product(watt, celsius); }), "OffsetUnitInProduct:degC");
  EXPECT_EQ(error_of([&] { quotient(watt, celsius); }), "OffsetUnitInProduct:degC");
  EXPECT_EQ(error_of([&] { power(celsius, 2); }), "OffsetUnitInProduct:degC");
  EXPECT_EQ(error_of([] { difference_unit(parse("lg(re 1 mW)")); }), "OffsetUnitInProduct:lg(re 1 mW)");
  EXPECT_EQ(difference_unit(watt), watt);
}

TEST(UnitAlgebra, PowersWithoutWholeExponentsAreRefusedUnlessTheBaseUnitHasThem) {
  EXPECT_EQ(error_of([] { power(parse("V"), 1, 2); }), "NoSuchPower:V");
  EXPECT_EQ(error_of([] { power(parse("kOhm*Ohm"), 1, 2); }), "NoSuchPower:kOhm*Ohm");
  EXPECT_FALSE(has_power(parse("V^2/Hz"), 1, 2));
  const AbstractExpr base = base_unit(parse("kOhm*Ohm"));
  ASSERT_TRUE(has_power(base, 1, 2));
  EXPECT_TRUE(commensurable(power(base, 1, 2), parse("Ohm")));
}

TEST(UnitAlgebra, ALoopOfProductsEndsWithAnErrorBeforeUnitsGrowLarge) {
  AbstractExpr unit = parse("Ohm");
  const std::string error = error_of([&] {
    for (int i = 0; i < 1000; ++i) unit = product(unit, parse("Ohm"));
  });
  EXPECT_EQ(error, "UnitTooLarge:Ohm^256");
  EXPECT_EQ(text_of(unit), "Ohm^255");
  EXPECT_EQ(error_of([&] { power(unit, 255); }), "UnitTooLarge:(Ohm^255)^255");
  EXPECT_EQ(error_of([] { power(parse("kOhm"), 103); }), "UnitTooLarge:kOhm^103");  // 1e309 Ohm^103
  AbstractExpr wide = parse("m");
  EXPECT_THAT(error_of([&] {
                for (int i = 1; i < 300; ++i) wide = product(wide, parse(std::to_string(i + 1) + " m"));
              }),
              testing::StartsWith("UnitTooLarge:m*(2 m)*(3 m)"));
}

TEST(UnitAlgebra, DimensionlessUnitsAreThoseThatConvertToOne) {
  for (const char* text : {"", "1", "%", "rad", "deg", "kOhm/Ohm", "m/m"}) EXPECT_TRUE(is_dimensionless(parse(text)));
  for (const char* text : {"m", "Hz", "degC"}) EXPECT_FALSE(is_dimensionless(parse(text)));
}

}  // namespace
}  // namespace units2::core
