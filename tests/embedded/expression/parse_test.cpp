#include "embedded/expression/parse.hpp"

#include "embedded/expression/print.hpp"
#include "platform/foundation/exception.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace embedded::expression {
namespace {

/// The tree with every operator in brackets, so that the structure shows: "a+b*c" is "(a + (b * c))".
std::string structure(const Node& node);

std::string joined(const Node& node, std::size_t begin, const char* separator) {
  std::string result;
  for (std::size_t i = begin; i < node.children().size(); ++i) {
    if (i > begin) result += separator;
    result += structure(node.child(i));
  }
  return result;
}

std::string structure_of_chain(const Node& node) {
  std::string result = "(" + structure(node.child(0));
  for (std::size_t i = 1; i < node.children().size(); ++i) {
    result += " " + std::string(symbol(node.operators()[i - 1])) + " " + structure(node.child(i));
  }
  return result + ")";
}

std::string structure(const Node& node) {
  switch (node.kind()) {
    case Kind::matrix:
      return "[" + joined(node, 0, ";") + "]";
    case Kind::cell:
      return "{" + joined(node, 0, ";") + "}";
    case Kind::row:
      return joined(node, 0, ",");
    case Kind::unary:
      return "(" + std::string(symbol(node.op())) + structure(node.child(0)) + ")";
    case Kind::transpose:
      return "(" + structure(node.child(0)) + std::string(symbol(node.op())) + ")";
    case Kind::chain:
      return structure_of_chain(node);
    case Kind::range:
      return "(" + joined(node, 0, ":") + ")";
    case Kind::index:
      return structure(node.child(0)) + "(" + joined(node, 1, ",") + ")";
    case Kind::cell_index:
      return structure(node.child(0)) + "{" + joined(node, 1, ",") + "}";
    case Kind::field:
      return structure(node.child(0)) + "." + node.text();
    case Kind::dynamic_field:
      return structure(node.child(0)) + ".(" + structure(node.child(1)) + ")";
    case Kind::anonymous:
      return "@{" + joined(node, 0, ",") + "}";
    default:
      return print(node);
  }
}

std::string structure_of(const std::string& text) {
  const ParseResult result = parse(text);
  return result ? structure(*result.tree) : "error " + result.error.id + "\n" + result.error.excerpt;
}

struct Case {
  const char* text;
  const char* expected;
};

void check(const std::vector<Case>& cases) {
  for (const Case& one : cases) EXPECT_EQ(structure_of(one.text), one.expected) << one.text;
}

TEST(Parse, OperatorsBindAsInMatrixLanguages) {
  check({{"a+b*c", "(a + (b * c))"},
         {"a-b-c", "(a - b - c)"},
         {"(a-b)-c", "(a - b - c)"},
         {"a-(b-c)", "(a - (b - c))"},
         {"a/b*c.\\d", "(a / b * c .\\ d)"},
         {"-2^2", "(-(2 ^ 2))"},
         {"2^-1^2", "(2 ^ (-1) ^ 2)"},
         {"2^3^4", "(2 ^ 3 ^ 4)"},
         {"2^-a'", "((2 ^ (-a))')"},
         {"a^b'", "((a ^ b)')"},
         {"a'^b.'", "(((a') ^ b).')"},
         {"-a*b", "((-a) * b)"},
         {"~a==b", "((~a) == b)"},
         {"!a!=b", "((~a) ~= b)"},
         {"- + ~a", "(-(+(~a)))"},
         {"a:b+1", "(a:(b + 1))"},
         {"a<b:c", "(a < (b:c))"},
         {"1:2:3", "(1:2:3)"},
         {"1:2:3:4:5", "((1:2:3):4:5)"},
         {"(1:2):3", "((1:2):3)"},
         {"a<b&c|d&&e||f", "(((((a < b) & c) | d) && e) || f)"},
         {"a||b&&c|d&e==f", "(a || (b && (c | (d & (e == f)))))"},
         {"a<b<c", "(a < b < c)"}});
}

TEST(Parse, BlanksAndSignsPartElementsInBracketsOnly) {
  check({{"[1 -2]", "[1,(-2)]"},
         {"[1 - 2]", "[(1 - 2)]"},
         {"[1 -2 - 3 -4]", "[1,((-2) - 3),(-4)]"},
         {"[1 , -2\n3 ,4]", "[1,(-2);3,4]"},
         {"[1 2; 3 4;]", "[1,2;3,4]"},
         {"[1,2,\n3,4\n]", "[1,2;3,4]"},
         {"[1 ... more\n 2]", "[1,2]"},
         {"[]", "[]"},
         {"[ ;\n; ]", "[]"},
         {"[a' b']", "[(a'),(b')]"},
         {"[a 'b']", "[a,'b']"},
         {"[a', 'b c']", "[(a'),'b c']"},
         {"[f (1)]", "[f,1]"},
         {"[f(1 -2)]", "[f((1 - 2))]"},
         {"[(1 -2)]", "[(1 - 2)]"},
         {"[a ~b]", "[a,(~b)]"},
         {"[a ~=b]", "[(a ~= b)]"},
         {"[a .* b]", "[(a .* b)]"},
         {"[c {1} c{1}]", "[c,{1},c{1}]"},
         {"[1 % two\n 3]", "[1;3]"},
         {"{1 -2; 'a' {}}", "{1,(-2);'a',{}}"},
         {"[[1 -2] -3]", "[[1,(-2)],(-3)]"},
         {"[@(x) x +1]", "[@{x,x},(+1)]"},
         {"c{1 -2}", "c{(1 - 2)}"},
         {"1 -2", "(1 - 2)"},
         {"a '", "(a')"}});
}

TEST(Parse, TextsNumbersAndCallsAreRead) {
  check({{"'it''s'", "'it''s'"},
         {"\"say \"\"it's\"\"\"", "'say \"it''s\"'"},
         {"''", "''"},
         {"'a' 'b'", "error UnexpectedToken\n'a' 'b'\n     ^"},
         {"f(1, :, end-1)", "f(1,:,(end - 1))"},
         {"f()(2).b.('c'){3}", "f()(2).b.('c'){3}"},
         {"@sin", "@sin"},
         {"@gl.gti.f", "@gl.gti.f"},
         {"@()-1", "@{(-1)}"},
         {"@(a)'text'", "@{a,'text'}"},
         {"{@(){1}}", "{@{{1}}}"},
         {"@(a,~)a+b", "@{a,~,(a + b)}"},
         {"1+@(x)x:2", "(1 + @{x,(x:2)})"},
         {"1.*2", "(1 .* 2)"},
         {"1./a.'", "(1 ./ (a.'))"},
         {"1.e2", "100"},
         {"3i+.5j", "(3i + 0.5i)"},
         {"f(a,\n b)", "f(a,b)"},
         {" \n a + ... comment\n b # end\n\n", "(a + b)"}});
}

TEST(Parse, NumbersAreTheNearestDoubles) {
  const std::vector<std::pair<const char*, double>> cases = {
      {"0.1", 0.1},        {"1e-310", 1e-310},      {"9007199254740993", 9007199254740992.0},
      {"1e999", INFINITY}, {"0.001e400", INFINITY}, {"1e-999", 0},
      {"1000000e-400", 0}};
  for (const auto& [text, value] : cases) EXPECT_EQ(parse(text).tree->number(), value) << text;
  EXPECT_EQ(parse(std::string(400, '9')).tree->number(), INFINITY);
  EXPECT_EQ(parse("0." + std::string(400, '0') + "1").tree->number(), 0);
}

TEST(Parse, ErrorsNameLineColumnAndShowTheText) {
  struct ErrorCase {
    const char* text;
    const char* id;
    const char* detail;
    std::size_t line, column;
    const char* excerpt;
  };
  const std::vector<ErrorCase> cases = {
      {"", "EmptyExpression", "", 1, 1, "\n^"},
      {" % only\n", "EmptyExpression", "", 1, 1, " % only\n^"},
      {"1 +", "UnexpectedEnd", "", 1, 4, "1 +\n   ^"},
      {"1 + * 2", "UnexpectedToken", "*", 1, 5, "1 + * 2\n    ^"},
      {"a\n+ b", "UnexpectedToken", "+", 2, 1, "+ b\n^"},
      {"a = 1", "UnexpectedCharacter", "=", 1, 3, "a = 1\n  ^"},
      {"'é' + ü", "UnexpectedCharacter", "ü", 1, 7, "'é' + ü\n      ^"},
      {"f('abc", "UnterminatedText", "'", 1, 3, "f('abc\n  ^"},
      {"'a\nb'", "UnterminatedText", "'", 1, 1, "'a\n^"},
      {"[1, 2\n (3", "UnclosedBracket", "(", 2, 2, " (3\n ^"},
      {"[1 2)", "UnexpectedToken", ")", 1, 5, "[1 2)\n    ^"},
      {"1 +\n2", "UnexpectedLineEnd", "", 1, 4, "1 +\n   ^"},
      {"2x", "InvalidNumber", "2", 1, 1, "2x\n^"},
      {"a + end", "EndOutsideIndexing", "end", 1, 5, "a + end\n    ^"},
      {"[1,,2]", "UnexpectedToken", ",", 1, 4, "[1,,2]\n   ^"},
      {"@(1) 2", "UnexpectedToken", "1", 1, 3, "@(1) 2\n  ^"},
      {"a.1", "UnexpectedToken", ".1", 1, 2, "a.1\n ^"},
      {"a)", "UnexpectedToken", ")", 1, 2, "a)\n ^"},
  };
  for (const ErrorCase& one : cases) {
    const ParseResult result = parse(one.text);
    ASSERT_FALSE(result) << one.text;
    EXPECT_EQ(result.error.id, one.id) << one.text;
    EXPECT_EQ(result.error.detail, one.detail) << one.text;
    EXPECT_EQ(result.error.line, one.line) << one.text;
    EXPECT_EQ(result.error.column, one.column) << one.text;
    EXPECT_EQ(result.error.excerpt, one.excerpt) << one.text;
  }
}

TEST(Parse, ExcerptOfLongLineShowsTheSurroundings) {
  const std::string text = std::string(5000, 'a') + " * / " + std::string(5000, 'b');
  const ParseResult result = parse(text);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error.column, 5004U);
  const std::size_t line_end = result.error.excerpt.find('\n');
  EXPECT_LT(line_end, 120U);
  EXPECT_EQ(result.error.excerpt.find('^') - line_end - 1, result.error.excerpt.find('/'));
}

TEST(Parse, ErrorIsRaisedWithTheCataloguesText) {
  try {
    parse_or_throw("1 +");
    FAIL();
  } catch (const kmf::MessageException& error) {
    EXPECT_EQ(error.data().group, "kinemo:scripting:expression");
    EXPECT_EQ(error.data().arguments, (std::vector<std::string>{"", "1", "4", "1 +\n   ^"}));
    EXPECT_NE(std::string(error.what()).find("1 +\n   ^"), std::string::npos) << error.what();
  }
}

TEST(Parse, EqualTextsShareOneTree) {
  const Tree first = parse_cached("a + 1").tree;
  EXPECT_EQ(parse_cached("a + 1").tree, first);
  EXPECT_NE(parse("a + 1").tree, first);
  const std::string long_name(4000, 'x');
  for (int i = 0; i < 2000; ++i) parse_cached(long_name + std::to_string(i));
  EXPECT_NE(parse_cached("a + 1").tree, first);
  EXPECT_TRUE(equal(parse_cached("a + 1").tree, first)) << "still right once it was forgotten";
}

TEST(Parse, LongFlatExpressionsAreOneLevel) {
  std::string sum = "a";
  std::string row = "[1";
  for (int i = 0; i < 100000; ++i) {
    sum += i % 2 == 0 ? "+a" : "-2*b";
    row += " -1";
  }
  const Tree tree = parse(sum).tree;
  ASSERT_TRUE(tree);
  EXPECT_EQ(tree->height(), 3U);
  EXPECT_TRUE(equal(parse(print(tree)).tree, tree));
  EXPECT_EQ(parse(row + "]").tree->child(0).children().size(), 100001U);
}

TEST(Parse, DeepNestingIsAnError) {
  const auto repeated = [](const char* text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
  };
  for (const int count : {2100, 10000}) {
    const std::vector<std::string> texts = {
        repeated("(", count),         repeated("[", count),         repeated("f(", count),
        repeated("@()", count) + "1", repeated("-", count) + "1",   "a" + repeated("'", count),
        "a" + repeated(".b", count),  "a" + repeated("(1)", count), "1" + repeated(":1", count),
        repeated("2^(", count),       repeated("{1,", count),       repeated("a.(", count)};
    for (const std::string& text : texts) {
      EXPECT_EQ(parse(text).error.id, "TooDeeplyNested") << text.substr(0, 10);
    }
  }
  const Tree nested = parse(repeated("-(", 900) + "1" + repeated(")", 900)).tree;
  ASSERT_TRUE(nested);
  EXPECT_TRUE(equal(parse(print(nested)).tree, nested));
}

}  // namespace
}  // namespace embedded::expression
