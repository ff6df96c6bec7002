#include "formats/spice/expression.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace kinemo::formats::spice {
namespace {

std::optional<double> value_of(const std::string& text, std::string* problem = nullptr) {
  const std::map<std::string, double> parameters{{"a", 3}, {"b", 0.5}, {"r_1", 1000}};
  ExpressionError error;
  const auto expression = parse_expression(text, error);
  const auto value = expression
                         ? evaluate(
                               *expression,
                               [&](const std::string& name) {
                                 const auto found = parameters.find(name);
                                 return found == parameters.end() ? std::nullopt : std::optional<double>(found->second);
                               },
                               error)
                         : std::nullopt;
  if (problem != nullptr) {
    *problem = std::to_string(error.offset) + ": " + error.text;
  }
  return value;
}

std::string in_host_language(const std::string& text) {
  ExpressionError error;
  const auto expression = parse_expression(text, error);
  return expression ? host_text(*expression) : error.text;
}

// The values are those that the simulator computes for `R1 a b {...}`.
TEST(NetlistExpression, HasTheValueOfTheSimulator) {
  const std::vector<std::pair<std::string, double>> cases{{"-2**2", -4},
                                                          {"2**3**2", 64},
                                                          {"(-2)**3", 8},
                                                          {"2^-1", 0.5},
                                                          {"2**-2*3", 0.75},
                                                          {"7-3-2", 2},
                                                          {"8/4*2", 4},
                                                          {"10 % 4 * 2", 4},
                                                          {"7\\2", 3},
                                                          {"!0+1", 2},
                                                          {"!2**2", 0},
                                                          {"1||0&&0", 1},
                                                          {"1<2==1", 1},
                                                          {"1<>2", 1},
                                                          {"1=1", 1},
                                                          {"0?2:0?3:4", 4},
                                                          {"2<3 ? a+1 : b", 4},
                                                          {"1meg", 1e6},
                                                          {"1mil", 1e-3},
                                                          {"10uf", 1e-5},
                                                          {".5k", 500},
                                                          {"5.", 5},
                                                          {"1e3k", 1e6},
                                                          {"1a", 1},
                                                          {"nint(2.5)", 2},
                                                          {"nint(-2.6)", -3},
                                                          {"int(-2.5)", -2},
                                                          {"pwr(-2,3)", 8},
                                                          {"pow(-2,3)", -8},
                                                          {"sgn(-3)", -1},
                                                          {"log(10)", 2.302585092994046},
                                                          {"max(1,a)", 3},
                                                          {"max(4)", 4},
                                                          {"agauss(1,0,1)", 1},
                                                          {"limit(a,1)", 3},
                                                          {"sqrt(sqr(r_1))", 1000},
                                                          {"a+{b*2}", 4},
                                                          {"ternary_fcn(0,1,2)", 2},
                                                          {"2*-3", -6},
                                                          {"-(-a)", 3},
                                                          {" ( a ) ", 3}};
  for (const auto& [text, expected] : cases) {
    EXPECT_THAT(value_of(text), testing::Optional(testing::DoubleEq(expected))) << text;
  }
}

TEST(NetlistExpression, TellsWhatIsWrongAndWhere) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"", "0: the expression is empty"},
      {"1+", "2: the expression ends where a value is needed"},
      {"(1", "0: '(' without its ')'"},
      {"1)", "1: ')' without a '(' before it"},
      {"1 ? 2", "2: '?' without its ':'"},
      {"1 : 2", "2: ':' without a '?' before it"},
      {"1k5", "2: a number can't go on with '5'"},
      {"1,2", "1: ',' outside of a function's arguments"},
      {"2 * nope", "4: there is no parameter 'nope'"},
      {"sqt(4)", "0: there is no function 'sqt'; did you mean 'sqr'?"},
      {"pow(4)", "0: function 'pow' takes 2 argument(s), not 1"},
      {"a|b", "1: '|' where an operator is needed"},
      {"(a)\xC2\xB5", "3: '\xC2\xB5' where an operator is needed"},
      {"1+\xC2\xB5", "2: '\xC2\xB5' where a value is needed"},
      {"1+v(x,y)", "2: 'v(x,y)' has no value before a simulation"}};
  for (const auto& [text, expected] : cases) {
    std::string problem;
    EXPECT_EQ(value_of(text, &problem), std::nullopt) << text;
    EXPECT_EQ(problem, expected);
  }
}

TEST(NetlistExpression, IsWrittenInTheLanguageOfTheHost) {
  const std::vector<std::pair<std::string, std::string>> cases{{"a**2*(b+1)", "a^2*(b + 1)"},
                                                               {"a-(b-c)", "a - (b - c)"},
                                                               {"(a-b)-c", "a - b - c"},
                                                               {"-a**2", "-a^2"},
                                                               {"(-a)**2", "(-a)^2"},
                                                               {"(a-1)**b + 2**a", "abs(a - 1)^b + 2^a"},
                                                               {"a>0 ? 1k : b", "ternary_fcn(a > 0, 1000, b)"},
                                                               {"!a && b != 2", "~a && b ~= 2"},
                                                               {"pwr(a,b)*int(c)", "abs(a)^(b)*fix(c)"},
                                                               {"a%2 + a\\2", "rem(a, 2) + fix(a/2)"},
                                                               {"ln(a)+sgn(b)", "log(a) + sign(b)"},
                                                               {"a^b^c", "abs(abs(a)^b)^c"},
                                                               {"a^(b^c)", "abs(a)^(abs(b)^c)"}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(in_host_language(text), expected) << text;
  }
}

TEST(NetlistExpression, KeepsWhatTheCircuitDecides) {
  ExpressionError error;
  const auto expression = parse_expression("k*(v(a,b)+i(v1))*(time>1u)", error);
  ASSERT_TRUE(expression);
  EXPECT_TRUE(expression->has_probes());
  EXPECT_EQ(netlist_text(*expression, [](const std::string&) { return std::optional<std::string>("-2"); }),
            "-2*(v(a,b)+i(v1))*(time>1e-06)");
}

TEST(NetlistExpression, LongAndDeepTextsNeitherOverflowNorTakeForever) {
  std::string sum = "1";
  for (int i = 0; i < 50'000; ++i) {
    sum += "+1";
  }
  EXPECT_THAT(value_of(sum), testing::Optional(50'001));
  EXPECT_EQ(in_host_language(sum).size(), 1 + 50'000 * 4U);
  for (const char* const opening : {"(", "-", "sin(", "1?", "2**("}) {
    std::string deep;
    for (int i = 0; i < 100'000; ++i) {
      deep += opening;
    }
    std::string problem;
    EXPECT_EQ(value_of(deep + "1", &problem), std::nullopt);
    EXPECT_THAT(problem, testing::HasSubstr("nested too deeply")) << opening;
  }
}

/// Functions of a netlist by name, their bodies read.
FunctionLookup functions(const std::map<std::string, Function>& all) {
  return [&all](const std::string& name) {
    const auto found = all.find(name);
    return found == all.end() ? nullptr : &found->second;
  };
}

Function function(std::vector<std::string> parameters, const std::string& body) {
  ExpressionError error;
  return {std::move(parameters), std::make_shared<const Expression>(*parse_expression(body, error))};
}

TEST(NetlistExpression, FunctionsOfTheNetlistArePutInPlace) {
  const std::map<std::string, Function> all{
      {"twice", function({"x"}, "x*2")}, {"mix", function({"x", "y"}, "twice(y)-x*a")}, {"two", function({}, "2")}};
  ExpressionError error;
  const auto expanded =
      with_functions(*parse_expression("mix(a+1, two())+max(twice(b),x)", error), functions(all), error);
  ASSERT_TRUE(expanded) << error.text;
  EXPECT_EQ(host_text(*expanded), "2*2 - (a + 1)*a + max(b*2, x)");
}

TEST(NetlistExpression, FunctionsThatCallThemselvesOrExplodeAreRefused) {
  std::map<std::string, Function> all{{"f", function({"x"}, "f(x)+1")}, {"g0", function({"x"}, "x+x")}};
  for (int i = 1; i < 60; ++i) {  // doubles at each step, and the last one would throw all of it away
    all["g" + std::to_string(i)] =
        function({"x"}, "g" + std::to_string(i - 1) + "(x)+g" + std::to_string(i - 1) + "(x)");
  }
  all["none"] = function({"x"}, "1");
  for (const auto& [text, expected] : std::map<std::string, std::string>{
           {"f(1)", "calls itself"}, {"none(g59(1))", "too long"}, {"none(1,2)", "takes 1 argument(s), not 2"}}) {
    ExpressionError error;
    EXPECT_FALSE(with_functions(*parse_expression(text, error), functions(all), error)) << text;
    EXPECT_THAT(error.text, testing::HasSubstr(expected));
  }
}

TEST(NetlistNumber, HasSuffixAndUnit) {
  const std::vector<std::pair<std::string, double>> cases{
      {"1k", 1e3},  {"4.7kOhm", 4700}, {"2MEG", 2e6},  {"3m", 3e-3}, {"1mil", 25.4e-6}, {"-5", -5},
      {"1u", 1e-6}, {"10pF", 1e-11},   {"1e-3", 1e-3}, {"5V", 5},    {"+.5f", 5e-16},   {"1T", 1e12}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(parse_number(text), expected) << text;
  }
  for (const char* text : {"", "k", "-", ".", "rload", "1+2", "1k*2", "e3"}) {
    EXPECT_EQ(parse_number(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace kinemo::formats::spice
