#include "platform/data/data.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

namespace data2::core {
namespace {

using testing::HasSubstr;

boost::optional<Expr> read(const std::string& text) {
  return cvi::CorvaneParser()(text);
}

Expr bound(const char* text, const char* unit) {
  return UnitBindExpr(read(text).value(), units2::core::parse(unit));
}

std::string written(const Expr& expression, std::size_t indent = 0, std::size_t width = 0) {
  std::ostringstream stream;
  out(stream, indent, width, expression);
  return stream.str();
}

std::string used(const Expr& expression) {
  std::set<std::string> names;
  for (const kmf::VnId& id : UsedIds()(expression)) names.insert(id);
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : " ") + name;
  return text;
}

TEST(CorvaneParser, NamesThatAreUsed) {
  const struct {
    const char* text;
    const char* names;
  } table[] = {
      {"1e3", ""},
      {"2*x + y/x", "x y"},
      {"max(b, [c; d'])", "b c d max"},  // a variable may have the name of a function
      {"table(k)", "k table"},
      {"pi*r^2 + eps", "eps pi r"},  // or of a constant
      {"p.gain*q", "p q"},
      {"p.table(n).w", "n p"},
      {"-x.^-y <= ~z || w", "w x y z"},
      {"[1, x; y 2].'", "x y"},
  };
  for (const auto& row : table) {
    SCOPED_TRACE(row.text);
    const auto expression = read(row.text);
    ASSERT_TRUE(expression);
    EXPECT_EQ(used(*expression), row.names);
  }
}

TEST(CorvaneParser, RefusesWhatIsOutsideTheSubset) {
  for (const char* text : {"",
                           "x +",
                           "'text'",
                           "\"text\"",
                           "{1, 2}",
                           "{x, 'm'}",
                           "@sin",
                           "@(x) x",
                           "x(:)",
                           "x(end)",
                           "x(1:2)",
                           "1:n",
                           "c{1}",
                           "s.(f)",
                           "2i*x",
                           "f('a')",
                           "[x, 'a']",
                           "x = 1",
                           "(1)(2)",
                           "2*kinemo.Value(x, 'm')",
                           "kinemo.Value(x, 'quark')",
                           "kinemo.Value('x', 'm')"}) {
    EXPECT_FALSE(read(text)) << text;
    EXPECT_FALSE(read(text)) << text << " (again)";
  }
  EXPECT_FALSE(read(std::string(100000, '(')));
}

TEST(CorvaneParser, EqualTextsShareOneTree) {
  EXPECT_EQ(read("k1*x")->node(), read("k1*x")->node());
  EXPECT_NE(read("k1*x")->node(), read("k1 * x")->node());
  EXPECT_TRUE(*read("k1*x") == *read("(k1 * x)"));
  EXPECT_FALSE(*read("k1*x") == *read("x*k1"));
}

TEST(CorvaneParser, ForgetsTextsWithoutHarm) {
  const Expr first = *read("a0 + 1");
  for (int i = 0; i < 100000; ++i) ASSERT_TRUE(read("a" + std::to_string(i) + " + 1"));
  EXPECT_TRUE(*read("a0 + 1") == first);
}

TEST(CorvaneParser, LongNamesAreNames) {
  const std::string name(200, 'n');
  EXPECT_EQ(used(*read("2*" + name)), name);
}

TEST(Expr, WrittenTextReadsBackToAnEqualTree) {
  for (const char* text : {"a + b - c", "a - (b - c)", "-(a + b)^2", "(-a)^b^c", "a^(-b)", "a.'*b'", "[1 -2; x, y+z]",
                           "~(a == b) && c < d", "max(a, min(b, 1e-3))", "s.t(2).u", "1e6*0.1", "a / b / c", "[]"}) {
    const auto expression = read(text);
    ASSERT_TRUE(expression) << text;
    for (const std::size_t width : {0u, 1u, 12u, 80u}) {
      const std::string again = written(*expression, 2, width);
      const auto back = read(again);
      ASSERT_TRUE(back) << again;
      EXPECT_TRUE(*back == *expression) << again;
    }
  }
}

TEST(Expr, LongLinesAreBrokenAndIndented) {
  std::string sum = "x0";
  for (int i = 1; i < 100; ++i) sum += " + x" + std::to_string(i);
  const std::string text = written(*read(sum), 3, 40);
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_LE(line.size(), 40u);
    EXPECT_EQ(line.substr(0, 3), "   ");
  }
  EXPECT_EQ(written(*read(sum)), sum);
}

TEST(Expr, AUnitBelongsToTheExpressionItIsBoundTo) {
  const Expr metres = bound("2*k.x", "m");
  EXPECT_EQ(bound_unit(metres).text(), "m");
  EXPECT_EQ(bound_unit(*read("2*k.x")).text(), "");
  EXPECT_FALSE(metres == *read("2*k.x"));
  EXPECT_FALSE(metres == bound("2*k.x", "mm"));
  EXPECT_TRUE(metres == bound("2 * k.x", "m"));
  EXPECT_EQ(used(metres), "k");
  EXPECT_FALSE(contains_dot_referencing(bound("2*k", "m")));
  EXPECT_TRUE(contains_dot_referencing(metres));
  EXPECT_TRUE(without_unit(metres) == *read("2*k.x"));
  EXPECT_EQ(written(without_unit(UnitBindExpr(metres, units2::core::parse("mm")))), "2*k.x");
  EXPECT_TRUE(without_unit(*read("k")) == *read("k"));
  EXPECT_TRUE(Expr(UnitBindExpr(*read("k"), {})) == *read("k"));  // the empty unit binds nothing
}

TEST(Expr, BoundExpressionsReadBack) {
  for (const Expr& expression : {bound("k", "m"), bound("a + b", "N*m/(rad/s)"), bound("x", "\u00b5F"),
                                 Expr(UnitBindExpr(bound("k", "mm"), units2::core::parse("m")))}) {
    for (const std::size_t width : {0u, 8u}) {
      const std::string text = written(expression, 0, width);
      const auto back = read(text);
      ASSERT_TRUE(back) << text;
      EXPECT_TRUE(*back == expression) << text;
      EXPECT_EQ(bound_unit(*back), bound_unit(expression));
    }
  }
}

TEST(Expr, WithoutContentsItUsesNothingAndEqualsItself) {
  EXPECT_TRUE(Expr() == Expr());
  EXPECT_FALSE(Expr() == *read("x"));
  EXPECT_EQ(used(Expr()), "");
  EXPECT_EQ(written(Expr()), "");
  EXPECT_TRUE(without_unit(Expr()) == Expr());
  EXPECT_EQ(bound_unit(UnitBindExpr(Expr(), units2::core::parse("m"))).text(), "");
}

}  // namespace
}  // namespace data2::core
