#include "domains/physical/parameter_reader.hpp"

#include "tests/domains/physical/physical_fixture.hpp"

namespace kinemo::physical::test {

namespace {

using gl::gti::ParameterValue;
using kinemo::test::error_of;

/// The parameters x and x_unit of a block "B".
class Reader : public kinemo::test::NoLeaks {
 protected:
  void set(const char* id, cvArray_tag* value) {
    const cvUniquePtr owned(value);
    data.addParameter(id, ParameterValue(value, u""));
  }
  static cvArray_tag* withUnit(double value, const char* unit) {
    cvArray_tag* object = cvCreateObject("kinemo.Value");
    cvSetProperty(object, 0, "value", cvCreateDoubleScalar(value));
    cvSetProperty(object, 0, "unit", cvCreateString(unit));
    return object;
  }
  data2::core::ValueData number() {
    return boost::get<data2::core::Value>(reader.number("x", "x_unit").get({})).data();
  }

  gl::gti::BlockData data;
  ParameterReader reader{data, [] { return ustring(u"B"); }};
};

}  // namespace

TEST_F(Reader, TellsNumbersInTheUnitOfThePartner) {
  struct Case {
    cvArray_tag* value;
    const char* unit;
    double number;
    const char* told;
  };
  const double row[] = {1, 2};
  for (const Case& c :
       {Case{cvCreateDoubleScalar(2), "kOhm", 2, "kOhm"}, Case{withUnit(2, "kOhm"), "Ohm", 2000, "Ohm"},
        Case{withUnit(2, "kOhm"), "kOhm", 2, "kOhm"}, Case{withUnit(2, "kOhm"), "", 2, "kOhm"},
        Case{withUnit(0, "degC"), "K", 273.15, "K"}, Case{cvCreateDoubleScalar(2), "", 2, ""},
        Case{cvCreateDoubleMatrix(1, 2, row), "s", 1, "s"}, Case{cvCreateLogicalScalar(true), "1", 1, "1"}}) {
    set("x", c.value);
    set("x_unit", cvCreateString(c.unit));
    EXPECT_DOUBLE_EQ(number().elements().at(0), c.number);
    EXPECT_EQ(number().unit().text(), c.told);
  }
}

TEST_F(Reader, KeepsTheShapeOfNumbersAndTheUnitInTheirType) {
  const double values[] = {1, 2, 3};
  set("x", cvCreateDoubleMatrix(1, 3, values));
  set("x_unit", cvCreateString("m"));
  EXPECT_EQ(number().dimensions(), (std::vector<std::size_t>{1, 3}));
  EXPECT_TRUE(reader.number("x", "x_unit").type() == gl::core::ParameterType::number(units2::core::parse("m")));
}

TEST_F(Reader, NamesBlockAndParameterInErrors) {
  const auto number_error = [this] { return error_of([this] { reader.number("x", "x_unit"); }); };
  const std::string group = "kinemo:physical:parameters:";
  EXPECT_EQ(number_error(), group + "MissingParameter(B, x)");
  EXPECT_EQ(error_of([this] { reader.text("x"); }), group + "MissingParameter(B, x)");
  set("x", cvCreateDoubleScalar(1));
  EXPECT_EQ(error_of([this] { reader.text("x"); }), group + "NotText(B, x, double)");
  set("x_unit", cvCreateDoubleScalar(1));
  EXPECT_EQ(number_error(), group + "NotText(B, x_unit, double)");
  set("x_unit", cvCreateString("s"));
  set("x", withUnit(1, "kOhm"));
  EXPECT_EQ(number_error(), group + "UnitsDiffer(B, x, kOhm, s)");
  set("x", cvCreateNumericArray({1, 1}, cvDOUBLE_CLASS, true));
  EXPECT_EQ(number_error(), group + "NotNumeric(B, x, double)");
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
