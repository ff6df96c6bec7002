#include "embedded/expression/print.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/expression/walk.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace embedded::expression {
namespace {

TEST(Print, WritesNoMoreBracketsThanNeeded) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"((a+b))*(c)", "(a + b)*c"},
      {"a-(b-c)", "a - (b - c)"},
      {"(a-b)-c", "a - b - c"},
      {"(-2)^2", "(-2)^2"},
      {"-(2^2)", "-2^2"},
      {"2^(-a)", "2^-a"},
      {"2^(3^4)", "2^(3^4)"},
      {"2^(a')", "2^(a')"},
      {"(a^b)'", "a^b'"},
      {"(-a)'", "(-a)'"},
      {"~(a==b)", "~(a == b)"},
      {"(1:2)+3", "(1:2) + 3"},
      {"1:(2:3)", "1:(2:3)"},
      {"[1 -2;a' \"b\"]", "[1, -2; a', 'b']"},
      {"{@(x)x+1 @f}", "{@(x) x + 1, @f}"},
      {"(@(x)x)(2)", "(@(x) x)(2)"},
      {"(1).a", "(1).a"},
      {"f(:,end)'", "f(:, end)'"},
      {"1000000*1.50e-3i", "1e6*0.0015i"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(print(parse_or_throw(text)), expected) << text;
}

TEST(Print, NumbersAreShortestAndReadBack) {
  EXPECT_EQ(print_number(0.1), "0.1");
  EXPECT_EQ(print_number(1e300), "1e300");
  EXPECT_EQ(print_number(1e-7), "1e-7");
  std::mt19937_64 random(1);
  for (int i = 0; i < 5000; ++i) {
    const std::uint64_t bits = random() >> 1U;
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (std::isnan(value)) continue;
    ASSERT_EQ(parse(print_number(value)).tree->number(), value);
  }
}

/// Random trees of every kind, made in canonical form.
class TreeMaker {
 public:
  explicit TreeMaker(unsigned seed) : random_(seed) {}

  Tree make(int depth, bool in_index = false) {
    if (depth == 0) return leaf(in_index);
    const auto sub = [&](bool index = false) { return make(depth - 1 - pick(2) * (depth > 1), index || in_index); };
    switch (pick(12)) {
      case 0:
        return make_unary(std::vector{Operator::plus, Operator::minus, Operator::not_}[pick(3)], sub());
      case 1:
        return make_transpose(pick(2) ? Operator::transpose : Operator::conjugate_transpose, sub());
      case 2:
        return pick(2) ? make_node(Kind::range, {sub(), sub()}) : make_node(Kind::range, {sub(), sub(), sub()});
      case 3:
        return make_index(sub(), {pick(3) ? sub(true) : make_node(Kind::colon, {}), sub(true)});
      case 4:
        return make_node(Kind::cell_index, {sub(), sub(true)});
      case 5:
        return make_field(sub(), "fld");
      case 6:
        return make_node(Kind::dynamic_field, {sub(), sub()});
      case 7:
        return make_node(pick(2) ? Kind::matrix : Kind::cell,
                         {make_node(Kind::row, {sub(), sub()}), make_node(Kind::row, {sub()})});
      case 8:
        return make_node(Kind::anonymous, {make_name("p"), make_name("~"), sub()});
      default:
        return make_binary(binary(), sub(), sub());
    }
  }

 private:
  int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  Operator binary() {
    for (;;) {
      const auto op = static_cast<Operator>(pick(21));
      if (op != Operator::not_) return op;
    }
  }

  Tree leaf(bool in_index) {
    switch (pick(7)) {
      case 0:
        return make_number(pick(1000) / 8.0 * std::pow(10.0, pick(40) - 20));
      case 1:
        return make_imaginary(pick(5));
      case 2:
        return make_text(std::vector<std::string>{"", "it's", "\"q\" % ...", "ü\xF0\x9F\x98\x80"}[pick(4)]);
      case 3:
        return make_node(Kind::handle, "h.g", {});
      case 4:
        if (in_index) return make_node(Kind::end, {});
        [[fallthrough]];
      default:
        return make_name(std::vector<std::string>{"a", "b_1", "e", "i"}[pick(4)]);
    }
  }

  std::mt19937 random_;
};

TEST(Print, EveryTreeReadsBackAsAnEqualOne) {
  for (unsigned seed = 0; seed < 8000; ++seed) {
    const Tree tree = TreeMaker(seed).make(1 + static_cast<int>(seed % 6));
    const std::string text = print(tree);
    const ParseResult again = parse(text);
    ASSERT_TRUE(again) << seed << ": " << text << "\n" << again.error.id << "\n" << again.error.excerpt;
    ASSERT_TRUE(equal(again.tree, tree)) << seed << ": " << text << "\n" << print(again.tree);
    ASSERT_EQ(hash(again.tree), hash(tree)) << text;
  }
}

TEST(Print, NumbersThatTextsCannotHoldBecomeExpressions) {
  EXPECT_EQ(print(make_number(-2)), "-2");
  EXPECT_EQ(print(make_binary(Operator::power, make_number(-2), make_number(2))), "(-2)^2");
  EXPECT_EQ(print(make_number(-INFINITY)), "-1e999");
  EXPECT_EQ(print(make_number(NAN)), "nan");
}

TEST(Walk, FreeNamesLeaveOutParametersAndFields) {
  EXPECT_EQ(used_names(*parse_or_throw("a + f(b, c.d)")), (std::set<std::string>{"a", "b", "c"}));
  EXPECT_EQ(used_names(*parse_or_throw("a + f(b, c.d)"), true), (std::set<std::string>{"a", "b", "c", "f"}));
  EXPECT_EQ(used_names(*parse_or_throw("x + (@(x, y) x + z(y) + @(z) z + y + w)")), (std::set<std::string>{"x", "w"}));
  EXPECT_EQ(used_names(*parse_or_throw("@g")), std::set<std::string>{});
}

}  // namespace
}  // namespace embedded::expression
