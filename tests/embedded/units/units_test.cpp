#include "platform/units/units.hpp"
#include "platform/foundation/exception.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace units2::core {
namespace {

std::string error_id(const std::string& text) {
  try {
    parse(text);
    return {};
  } catch (const kmf::MessageException& error) {
    return error.message().identifier().id;
  }
}

std::string error_of(const std::string& text) {
  try {
    parse(text);
    return {};
  } catch (const kmf::MessageException& error) {
    return error.message().identifier().id + ":" + kmf::argument_text(error.message().identifier().arguments.at(0));
  }
}

TEST(Units, EqualTextsHaveOneNumberAndTheEmptyTextIsNumberZero) {
  EXPECT_EQ(parse("").id(), 0u);
  EXPECT_EQ(parse("  ").id(), 0u);
  EXPECT_NE(parse("1").id(), 0u);
  EXPECT_EQ(parse("kOhm"), parse(" kOhm\n"));
  EXPECT_FALSE(parse("kOhm") == parse("1000 Ohm"));  // the text belongs to the unit
  EXPECT_EQ(ExprString(parse(" N*m ")).text(), "N*m");
  EXPECT_EQ(ExprString().text(), "");
}

TEST(Units, SpellingsOfTheFieldConvertToBaseUnits) {
  const struct {
    const char* from;
    const char* to;
    double factor;
  } table[] = {
      {"Ohm", "V/A", 1},
      {"kOhm", "Ohm", 1e3},
      {"MOhm", "Ohm", 1e6},
      {"mOhm", "Ohm", 1e-3},
      {"uF", "F", 1e-6},
      {"nH", "H", 1e-9},
      {"pF", "A*s/V", 1e-12},
      {"MPa", "Pa", 1e6},
      {"1/Ohm", "S", 1},
      {"deg", "rad", 0.0174532925199432957},
      {"rev", "rad", 6.28318530717958648},
      {"rpm", "rad/s", 0.104719755119659775},
      {"rev/min", "rpm", 1},
      {"N*m", "J", 1},
      {"Nm", "N*m", 1},
      {"N*m/(rad/s)", "kg*m^2/s", 1},
      {"J/kg/K", "J/(kg*K)", 1},
      {"W/(m^2*K)", "kg/s^3/K", 1},
      {"mph", "m/s", 0.44704},
      {"lpm", "m^3/s", 1e-3 / 60},
      {"gpm", "lpm", 3.785411784},
      {"kWh", "J", 3.6e6},
      {"mAh", "C", 3.6},
      {"lbm", "kg", 0.45359237},
      {"nmi", "m", 1852},
      {"%", "1", 0.01},
      {"kvar", "W", 1e3},
      {"degC/W", "K/W", 1},
      {"\u00b5F", "uF", 1},
      {"\u03a9", "Ohm", 1},
      {"cP", "Pa*s", 1e-3},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(std::string(row.from) + " to " + row.to);
    ASSERT_TRUE(commensurable(parse(row.from), parse(row.to)));
    EXPECT_NEAR(convert(2, parse(row.from), parse(row.to)), 2 * row.factor, 1e-9 * row.factor);
    EXPECT_NEAR(convert(row.factor, parse(row.to), parse(row.from)), 1, 1e-9);
  }
}

/// What people write in decimal numbers stays so.
TEST(Units, DecimalFactorsRoundOnceAtMost) {
  const struct {
    double value;
    const char* from;
    const char* to;
    double expected;
  } table[] = {{2, "uF", "nF", 2000},        {4.7, "kOhm", "Ohm", 4700}, {220, "nF", "uF", 0.22},
               {3, "mA", "A", 0.003},        {1e6, "Ohm", "MOhm", 1},    {4.7, "nH", "H", 4.7e-9},
               {4.7, "pF", "F", 4.7 / 1e12}, {0.7, "%", "1", 0.7 / 100}, {1.1, "kOhm*uF", "ms", 1.1},
               {12.5, "mm", "m", 0.0125},    {1, "inch", "mm", 25.4},    {25.4, "mm", "inch", 1},
               {72, "km/h", "m/s", 20},      {-3, "kV", "V", -3000},     {0, "kV", "V", 0},
               {1, "kWh", "J", 3.6e6},       {33e-6, "F", "uF", 33},     {1e30, "fF", "F", 1e15}};
  for (const auto& row : table) {
    EXPECT_EQ(convert(row.value, parse(row.from), parse(row.to)), row.expected) << row.value << row.from;
  }
}

TEST(Units, OffsetUnitsConvertWithTheirOffset) {
  EXPECT_DOUBLE_EQ(convert(25, parse("degC"), parse("K")), 298.15);
  EXPECT_NEAR(convert(212, parse("degF"), parse("degC")), 100, 1e-9);
}

TEST(Units, TheEmptyUnitConvertsAsTheDimensionlessOne) {
  EXPECT_DOUBLE_EQ(convert(0.5, parse(""), parse("%")), 50);
  EXPECT_DOUBLE_EQ(convert(3, parse("rad"), {}), 3);
  EXPECT_FALSE(commensurable({}, parse("m")));
}

TEST(Units, UnitsOfOtherDimensionsDontConvert) {
  EXPECT_FALSE(commensurable(parse("V"), parse("A")));
  EXPECT_FALSE(commensurable(parse("s"), parse("Hz")));  // reciprocals
  EXPECT_FALSE(commensurable(parse("Ohm"), parse("S")));
  EXPECT_TRUE(commensurable(parse("lg(re 1 mW)"), parse("W")));
  try {
    convert(1, parse("kOhm"), parse("N*m"));
    FAIL();
  } catch (const kmf::MessageException& error) {
    EXPECT_EQ(error.message().identifier().group, "kinemo:units:core");
    EXPECT_EQ(error.message().identifier().id, "IncommensurableUnits");
    EXPECT_STREQ(error.what(), "A value in 'kOhm' can't be told in 'N*m': the units measure different things.");
  }
}

TEST(Units, TextsThatAreNoUnitsAreRefusedAndNamedAsWritten) {
  EXPECT_EQ(error_of("quark"), "InvalidUnit:quark");
  EXPECT_EQ(error_of("m/"), "InvalidUnit:m/");
  EXPECT_EQ(error_of("m^0.5"), "InvalidUnit:m^0.5");
  EXPECT_EQ(error_of("m^1000"), "InvalidUnit:m^1000");
  EXPECT_EQ(error_of(std::string("m\0x", 3)), "InvalidUnit:" + std::string("m\0x", 3));
  EXPECT_EQ(error_of("\xff\xfe"), "InvalidUnit:\xff\xfe");
  EXPECT_NE(error_of(std::string(100000, '(')), "");
  EXPECT_NE(error_of("m" + std::string(300, ' ') + "s"), "");
  EXPECT_EQ(error_of("quark"), "InvalidUnit:quark");  // a refusal leaves nothing behind
}

TEST(Units, NothingIsWrittenToTheStandardError) {
  testing::internal::CaptureStderr();
  EXPECT_NE(error_of("kg*frob"), "");
  EXPECT_FALSE(commensurable(parse("kg"), parse("s")));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(UnitsDeathTest, AMissingDatabaseIsToldByAMessage) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";  // a process that has read no database yet
  const auto parse_without_database = [] {
    setenv("UDUNITS2_XML_PATH", "/nowhere/udunits2.xml", 1);
    std::exit(error_id("m") == "NoUnitDatabase" ? 0 : 1);
  };
  EXPECT_EXIT(parse_without_database(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace units2::core
