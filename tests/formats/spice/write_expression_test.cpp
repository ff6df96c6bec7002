// Expressions in the netlists' parameter language, and that they have the values of the model's language.

#include "formats/spice/write_expression.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <map>

#include "embedded/environment/environment.hpp"
#include "embedded/expression/parse.hpp"
#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {
namespace {

using units2::core::AbstractExpr;

const std::map<std::string, std::string> units_of_parameters{{"R", "kOhm"},  {"C", "uF"},    {"T", "degC"},
                                                             {"T2", "degC"}, {"phi", "deg"}, {"share", "percent"}};

std::optional<ParameterName> find(const std::string& name, std::string& problem) {
  const auto unit = units_of_parameters.find(name);
  if (unit != units_of_parameters.end()) {
    return ParameterName{name, units2::core::parse(unit->second)};
  }
  if (name == "m") {
    problem = "the parameter 'm' has no value in a netlist: it is a matrix";
  }
  return name.size() == 1 && name != "m" ? std::optional(ParameterName{name, {}}) : std::nullopt;
}

/// The text, or the reason why there is none behind an exclamation mark.
std::string written(const std::string& text, const std::string& bound = "", const std::string& told = "") {
  std::string problem;
  const auto tree = embedded::expression::parse_or_throw(text);
  const auto result = write_expression(*tree, units2::core::parse(bound), units2::core::parse(told), find, problem);
  return result ? card_value(*result) : "!" + problem;
}

double value_of(const std::string& text, const std::map<std::string, double>& values) {
  ExpressionError error;
  const auto expression = parse_expression(text, error);
  const auto value = expression ? evaluate(
                                      *expression,
                                      [&](const std::string& name) {
                                        const auto found = values.find(name);
                                        return found != values.end() ? std::optional(found->second) : std::nullopt;
                                      },
                                      error)
                                : std::nullopt;
  EXPECT_TRUE(value) << text << ": " << error.text;
  return value.value_or(std::nan(""));
}

TEST(WriteExpression, SaysOperatorsSoThatTheSimulatorReadsThemRight) {
  const std::pair<const char*, const char*> rows[] = {
      {"2.5e-9", "2.5e-09"},
      {"-3", "-3"},
      {"a", "{a}"},
      {"a + b - c", "{a+b-c}"},
      {"a - (b - c)", "{a-(b-c)}"},
      {"a*(b + c)/d", "{a*(b+c)/d}"},
      {"a/(b*c)", "{a/(b*c)}"},
      {"a .* b ./ c", "{a*b/c}"},
      {"a \\ b", "{b/a}"},
      {"a*(-b)", "{a*(-b)}"},
      {"-a + b", "{(-a)+b}"},
      {"-a^2", "{-pow(a,2)}"},
      {"a^b^c", "{pow(pow(a,b),c)}"},
      {"(a + b)^-c", "{pow(a+b,-c)}"},
      {"a < b", "{a<b}"},
      {"(a < b) ~= (c >= d)", "{(a<b)!=(c>=d)}"},
      {"a > 0 && ~(b == c) || d", "{a>0&&(!(b==c))||d}"},
      {"a | b & c", "{a||b&&c}"},
      {"+a", "{a}"},
      {"a'", "{a}"},
      {"[a]", "{a}"},
      {"2*pi", "{2*3.141592653589793}"},
      {"true + false", "{1+0}"},
      {"ternary_fcn(a > b, c, -d)", "{ternary_fcn(a>b,c,-d)}"},
      {"plus(a, b)*c", "{(a+b)*c}"},
      {"log(a)*log2(b)", "{ln(a)*(ln(b)/0.6931471805599453)}"},
  };
  for (const auto& [host, netlist] : rows) {
    EXPECT_EQ(written(host), netlist) << host;
  }
}

TEST(WriteExpression, SaysWhyItCant) {
  const std::pair<const char*, const char*> rows[] = {
      {"Inf*a", "isn't finite"},
      {"unknown + 1", "'unknown' is no parameter"},
      {"m + 1", "'m' has no value in a netlist: it is a matrix"},
      {"m(2)", "element of 'm'"},
      {"[a b]", "a matrix"},
      {"det(a)", "no function for 'det' of 1"},
      {"max(a, b, c)", "no function for 'max' of 3"},
      {"a.b", "can't be said"},
      {"R + C", "'uF' and not in 'kOhm'"},
      {"sin(R)", "a plain number where there is one in 'kOhm'"},
      {"2*T", "a point on a scale"},
      {"T + T2", "a point on a scale"},
      {"R^a", "an exponent"},
      {"ternary_fcn(a, R, C)", "different units"},
      {"ternary_fcn(a, R, b)", "different units"},
  };
  for (const auto& [host, reason] : rows) {
    EXPECT_THAT(written(host), testing::StartsWith("!")) << host;
    EXPECT_THAT(written(host), testing::HasSubstr(reason)) << host;
  }
  std::string doubled = "a";
  for (int i = 0; i < 20; ++i) {
    doubled = "mod(" + doubled + ", b)";
  }
  EXPECT_EQ(written(doubled), "!it gets too long");
}

/// Parameters stand in base units; bare numbers count in the unit of what they meet.
TEST(WriteExpression, ComputesWithUnitsAsTheModelDoes) {
  struct Row {
    const char* host;
    const char* bound;
    const char* told;
    const char* netlist;
  };
  const Row rows[] = {
      {"a", "kOhm", "Ohm", "{a*1000}"},
      {"5", "Ohm", "Ohm", "5"},
      {"a", "degC", "K", "{a+273.15}"},
      {"a + b", "degC", "degC", "{a+b}"},
      {"R", "kOhm", "Ohm", "{R}"},
      {"2*R", "Ohm", "Ohm", "{2*R}"},
      {"R + 1", "Ohm", "Ohm", "{R+1*1000}"},
      {"R*C", "s", "s", "{R*C}"},
      {"sqrt(R*R + R^2)", "Ohm", "Ohm", "{sqrt(R*R+pow(R,2))}"},
      {"round(R)", "Ohm", "Ohm", "{sgn(R*0.001)*floor(abs(R*0.001)+0.5)*1000}"},
      {"max(1, R)", "Ohm", "Ohm", "{max(1*1000,R)}"},
      {"R > 1", "", "", "{R>1*1000}"},
      {"sin(phi)", "V", "V", "{sin(phi)}"},
      {"phi", "rad", "deg", "{phi*57.29577951308232}"},
      {"share*a", "1", "1", "{share*a}"},
      {"T + 10", "K", "degC", "{T+10-273.15}"},
      {"T - T2", "K", "K", "{T-T2}"},
      {"kinemo.Value(a, 'mV')/R", "A", "A", "{a*0.001/R}"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(written(row.host, row.bound, row.told), row.netlist) << row.host;
  }
  EXPECT_THAT(written("R*C", "Ohm", "Ohm"), testing::StartsWith("!"));
}

/// Functions that netlists don't have are made of others.
TEST(WriteExpression, FunctionsHaveTheirValues) {
  using Function = std::function<double(double, double)>;
  const std::pair<const char*, Function> rows[] = {
      {"atan2(x, y)", [](double x, double y) { return std::atan2(x, y); }},
      {"mod(x, y)", [](double x, double y) { return y == 0 ? x : x - y * std::floor(x / y); }},
      {"hypot(x, y)", [](double x, double y) { return std::hypot(x, y); }},
      {"round(x) + fix(y)", [](double x, double y) { return std::round(x) + std::trunc(y); }},
      {"sign(x)*expm1(y/9)", [](double x, double y) { return (x > 0   ? 1
                                                              : x < 0 ? -1
                                                                      : 0) *
                                                             std::expm1(y / 9); }},
      {"log1p(abs(x))", [](double x, double) { return std::log1p(std::fabs(x)); }},
      {"sind(x) + cosd(y)",
       [](double x, double y) { return std::sin(x * std::acos(-1) / 180) + std::cos(y * std::acos(-1) / 180); }},
      {"deg2rad(x) - rad2deg(y)", [](double x, double y) { return x * std::acos(-1) / 180 - y * 180 / std::acos(-1); }},
      {"x^2 - (-x)^3", [](double x, double) { return x * x + x * x * x; }},
      {"and(x, y) + 2*or(x, y) + 4*not(x)",
       [](double x, double y) { return (x && y ? 1 : 0) + (x || y ? 2 : 0) + (x == 0 ? 4 : 0); }},
      {"minus(x, y)/2*times(x, 3)", [](double x, double y) { return (x - y) / 2 * (x * 3); }},
  };
  for (const auto& [host, function] : rows) {
    const std::string text = written(host);
    for (const double x : {-7.5, -2.5, -1.0, 0.0, 0.5, 3.0, 8.25}) {
      for (const double y : {-4.0, -0.5, 0.0, 1.0, 2.5}) {
        const double expected = function(x, y);
        EXPECT_NEAR(value_of(text.substr(1, text.size() - 2), {{"x", x}, {"y", y}}), expected,
                    1e-12 * (1 + std::fabs(expected)))
            << host << " for " << x << ", " << y;
      }
    }
  }
}

}  // namespace
}  // namespace kinemo::formats::spice
