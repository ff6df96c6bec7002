#include "domains/physical/parameter_reader.hpp"

#include "tests/domains/physical/physical_fixture.hpp"

#include <limits>

namespace kinemo::physical::test {

namespace {

using gl::gti::ParameterValue;
using kinemo::test::error_of;

/// The parameters x and x_unit of a block "B".
class Reader : public kinemo::test::NoLeaks {
 protected:
  void set(const char* id, cvArray_tag* value, const ustring& typed = u"") {
    const cvUniquePtr owned(value);
    data.addParameter(id, ParameterValue(value, typed));
  }
  void set(cvArray_tag* value, const char* unit, const ustring& typed = u"") {
    set("x", value, typed);
    set("x_unit", cvCreateString(unit));
  }
  static cvArray_tag* withUnit(double value, const char* unit) {
    cvArray_tag* object = cvCreateObject("kinemo.Value");
    cvSetProperty(object, 0, "value", cvCreateDoubleScalar(value));
    cvSetProperty(object, 0, "unit", cvCreateString(unit));
    return object;
  }
  static NumberRule declared(const char* unit, bool unlimited = false) {
    return {units2::core::parse(unit), unlimited};
  }
  gl::core::Parameter parameter(const NumberRule& rule) { return reader.number("x", "x_unit", rule); }
  std::string errorWith(const NumberRule& rule) {
    return error_of([&] { parameter(rule); });
  }
  static data2::core::ValueData value(const gl::core::Parameter& parameter) {
    return boost::get<data2::core::Value>(parameter.get({})).data();
  }

  gl::gti::BlockData data;
  ParameterReader reader{data, [] { return ustring(u"B"); }};
};

}  // namespace

TEST_F(Reader, TellsNumbersInTheUnitOfThePartnerOrInTheDeclaredOne) {
  struct Case {
    cvArray_tag* value;
    const char* unit;
    const char* declared;
    double number;
    const char* told;
  };
  for (const Case& c : {
           Case{cvCreateDoubleScalar(2), "kOhm", "Ohm", 2, "kOhm"},
           Case{cvCreateDoubleScalar(2), "", "Ohm", 2, "Ohm"},
           Case{cvCreateDoubleScalar(2), " ", "Ohm", 2, "Ohm"},
           Case{withUnit(2, "kOhm"), "Ohm", "Ohm", 2000, "Ohm"},
           Case{withUnit(2, "kOhm"), "kOhm", "Ohm", 2, "kOhm"},
           Case{withUnit(2, "kOhm"), "", "Ohm", 2000, "Ohm"},
           Case{withUnit(2, ""), "kOhm", "Ohm", 2, "kOhm"},
           Case{withUnit(2, "V/A"), "mOhm", "Ohm", 2000, "mOhm"},
           Case{withUnit(0, "degC"), "K", "K", 273.15, "K"},
           Case{withUnit(0, "degC"), "", "K", 273.15, "K"},
           Case{cvCreateDoubleScalar(20), "degC", "K", 20, "degC"},
           Case{withUnit(300, "K"), "degC", "K", 26.85, "degC"},
           Case{cvCreateLogicalScalar(true), "1", "1", 1, "1"},
           Case{cvCreateDoubleScalar(5), "", "1", 5, "1"},
           Case{cvCreateDoubleScalar(5), "percent", "1", 5, "percent"},
           Case{withUnit(5, "percent"), "", "1", 0.05, "1"},
           Case{withUnit(180, "degree"), "rad", "1", 3.14159265358979, "rad"},
           Case{withUnit(2, "rad"), "1", "1", 2, "1"},
           Case{cvCreateDoubleScalar(1e300), "GOhm", "Ohm", 1e300, "GOhm"},
       }) {
    SCOPED_TRACE(std::string(c.unit) + " where " + c.declared + " is declared");
    set(c.value, c.unit);
    const gl::core::Parameter read = parameter(declared(c.declared));
    EXPECT_NEAR(value(read).elements().at(0), c.number, 1e-12 * c.number);
    EXPECT_EQ(value(read).unit().text(), c.told);
    EXPECT_TRUE(read.type() == gl::core::ParameterType::number(units2::core::parse(c.told)));
  }
}

TEST_F(Reader, RefusesUnitsOfOtherDimensionsThanTheDeclaredOne) {
  struct Case {
    cvArray_tag* value;
    const char* unit;
    const char* declared;
    std::string error;
  };
  for (const Case& c : {
           Case{cvCreateDoubleScalar(1), "s", "Ohm", "UnitNotOfKind(B, x, s, Ohm)"},
           Case{cvCreateDoubleScalar(1), "1", "Ohm", "UnitNotOfKind(B, x, 1, Ohm)"},
           Case{cvCreateDoubleScalar(1), "Ohm", "1", "UnitNotOfKind(B, x, Ohm, 1)"},
           Case{withUnit(1, "V"), "s", "Ohm", "UnitNotOfKind(B, x, s, Ohm)"},
           Case{withUnit(1, "V"), "kOhm", "Ohm", "ValueUnitNotOfKind(B, x, V, kOhm, Ohm)"},
           Case{withUnit(1, "V"), "", "Ohm", "ValueUnitNotOfKind(B, x, V, Ohm, Ohm)"},
           Case{withUnit(1, "1"), "", "Ohm", "ValueUnitNotOfKind(B, x, 1, Ohm, Ohm)"},
           Case{withUnit(1, "Ohm"), "", "1", "ValueUnitNotOfKind(B, x, Ohm, 1, 1)"},
           Case{withUnit(1, "Ohm"), "percent", "1", "ValueUnitNotOfKind(B, x, Ohm, percent, 1)"},
           Case{cvCreateDoubleScalar(1), "furlong per", "Ohm", "InvalidUnit(B, x, furlong per)"},
       }) {
    set(c.value, c.unit);
    EXPECT_EQ(errorWith(declared(c.declared)), "kinemo:physical:parameters:" + c.error);
  }
}

TEST_F(Reader, RefusesWhatIsNoSingleNumber) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double row[] = {1, 2};
  const std::string group = "kinemo:physical:parameters:";
  struct Case {
    cvArray_tag* value;
    std::string error;
    std::string whereUnlimited;
  };
  for (const Case& c : {
           Case{cvCreateDoubleScalar(nan), "NotANumber(B, x, t)", "NotANumber(B, x, t)"},
           Case{cvCreateDoubleScalar(infinity), "Infinite(B, x, t)", ""},
           Case{cvCreateDoubleScalar(-infinity), "Infinite(B, x, t)", ""},
           Case{withUnit(1e308, "kOhm"), "Infinite(B, x, t)", ""},
           Case{cvCreateDoubleMatrix(1, 2, row), "NotScalar(B, x, t, 1x2)", "NotScalar(B, x, t, 1x2)"},
           Case{cvCreateDoubleMatrix(0, 0, nullptr), "NotScalar(B, x, t, 0x0)", "NotScalar(B, x, t, 0x0)"},
           Case{cvCreateString("one"), "NotNumeric(B, x, t, char)", "NotNumeric(B, x, t, char)"},
           Case{cvCreateNumericArray({1, 1}, cvDOUBLE_CLASS, true), "NotNumeric(B, x, t, complex double)",
                "NotNumeric(B, x, t, complex double)"},
       }) {
    set(c.value, "Ohm", u"t");
    EXPECT_EQ(errorWith(declared("Ohm")), group + c.error);
    EXPECT_EQ(errorWith(declared("Ohm", true)), c.whereUnlimited.empty() ? "" : group + c.whereUnlimited);
  }
}

TEST_F(Reader, KeepsShapeAndUnitOfNumbersThatNoKindDeclares) {
  const double values[] = {1, 2, 3};
  set(cvCreateDoubleMatrix(1, 3, values), "m");
  const gl::core::Parameter read = reader.numbers("x", "x_unit");
  EXPECT_EQ(value(read).dimensions(), (std::vector<std::size_t>{1, 3}));
  EXPECT_TRUE(read.type() == gl::core::ParameterType::number(units2::core::parse("m")));
  set(withUnit(2, "kOhm"), "");
  EXPECT_EQ(value(reader.numbers("x", "x_unit")).unit().text(), "kOhm");
  set(cvCreateDoubleScalar(2), "");
  EXPECT_EQ(value(reader.numbers("x", "x_unit")).unit().text(), "");
  set(withUnit(1, "kOhm"), "s");
  EXPECT_EQ(error_of([this] { reader.numbers("x", "x_unit"); }),
            "kinemo:physical:parameters:UnitsDiffer(B, x, kOhm, s)");
}

TEST_F(Reader, NamesBlockAndParameterInErrors) {
  const std::string group = "kinemo:physical:parameters:";
  EXPECT_EQ(errorWith(declared("s")), group + "MissingParameter(B, x)");
  EXPECT_EQ(error_of([this] { reader.text("x"); }), group + "MissingParameter(B, x)");
  set("x", cvCreateDoubleScalar(1));
  EXPECT_EQ(error_of([this] { reader.text("x"); }), group + "NotText(B, x, double)");
  set("x_unit", cvCreateDoubleScalar(1));
  EXPECT_EQ(errorWith(declared("s")), group + "NotText(B, x_unit, double)");
}

TEST_F(Reader, TakesChoicesInAnyCase) {
  set("x", cvCreateString("Slow"));
  EXPECT_EQ(reader.choice("x", {"fast", "slow"}), u"slow");
  set("x", cvCreateString("slo"));
  EXPECT_EQ(error_of([this] {
              reader.choice("x", {"fast", "slow"});
            }),
            "kinemo:physical:parameters:InvalidChoice(B, x, slo, 'fast', 'slow')");
}

TEST_F(Reader, LeavesOutWhatIsNeitherNumberNorText) {
  set("x", cvCreateCellMatrix(1, 1));
  EXPECT_FALSE(reader.any("x", "x_unit"));
  set("x", cvCreateString("thin"));
  EXPECT_EQ(reader.any("x", "x_unit")->type().kind(), gl::core::ParameterType::Kind::Text);
  set("x", cvCreateDoubleScalar(1));
  EXPECT_EQ(reader.any("x", "x_unit")->type().kind(), gl::core::ParameterType::Kind::Number);
}

}  // namespace kinemo::physical::test
