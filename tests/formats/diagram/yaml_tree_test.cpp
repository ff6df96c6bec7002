#include "formats/diagram/yaml_tree.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kinemo::formats::diagram {
namespace {

using ::testing::HasSubstr;

/// The rule, line and column of the first problem, such as "diagram:syntax 1:5".
std::string first_problem(const std::string& text) {
  DiagnosticList problems;
  const YamlTree tree(text, "f.yaml", problems);
  EXPECT_EQ(problems.has_errors(), tree.root() == nullptr);
  if (problems.empty()) return "none";
  const Diagnostic& first = problems.all().front();
  return first.rule + " " + std::to_string(first.line) + ":" + std::to_string(first.column);
}

TEST(YamlTree, NodesKnowWhereTheyWereWritten) {
  DiagnosticList problems;
  const YamlTree tree("a: 1\nb:\n  - x\n  - {c: 'y z'}\nd:\n", "f.yaml", problems);
  ASSERT_TRUE(problems.empty());
  const YamlNode& items = *tree.root()->find("b");
  ASSERT_TRUE(items.is_sequence());
  EXPECT_EQ(4U, items.children[1]->find("c")->line);
  EXPECT_EQ(9U, items.children[1]->find("c")->column);
  EXPECT_EQ("y z", items.children[1]->find("c")->text);
  EXPECT_TRUE(tree.root()->find("d")->is_null());
  EXPECT_EQ(nullptr, tree.root()->find("e"));
}

TEST(YamlTree, ScalarsStayAsTheyAreWritten) {
  DiagnosticList problems;
  const YamlTree tree("\xEF\xBB\xBF[1e3, on, 007, 0x1F, ~, \"a\\nb\", 'it''s']", "f.json", problems);
  const std::vector<const YamlNode*>& items = tree.root()->children;
  ASSERT_EQ(7U, items.size());
  EXPECT_EQ("1e3", items[0]->text);
  EXPECT_EQ("on", items[1]->text);
  EXPECT_EQ("007", items[2]->text);
  EXPECT_EQ("0x1F", items[3]->text);
  EXPECT_TRUE(items[4]->is_null());
  EXPECT_EQ("a\nb", items[5]->text);
  EXPECT_EQ("it's", items[6]->text);
}

TEST(YamlTree, AliasIsTheNodeThatItNames) {
  DiagnosticList problems;
  const YamlTree tree("a: &x {k: 1}\nb: *x\n", "f.yaml", problems);
  ASSERT_NE(nullptr, tree.root());
  EXPECT_EQ(tree.root()->find("a"), tree.root()->find("b"));
}

TEST(YamlTree, RefusesWhatIsNoTree) {
  EXPECT_EQ("diagram:syntax 1:1", first_problem(""));
  EXPECT_EQ("diagram:syntax 1:1", first_problem("# nothing but a comment\n"));
  EXPECT_EQ("diagram:syntax 3:1", first_problem("a: 1\n---\nb: 1\n"));
  EXPECT_EQ("diagram:duplicate-key 3:1", first_problem("a: 1\nb: 2\na: 3\n"));
  EXPECT_THAT(first_problem("a: &x {b: *x}\n"), HasSubstr("diagram:recursion 1:"));
  EXPECT_THAT(first_problem("a: [1, 2\n"), HasSubstr("diagram:syntax"));
  EXPECT_THAT(first_problem("a: *nowhere\n"), HasSubstr("diagram:syntax 1:"));
  EXPECT_THAT(first_problem("{[1, 2]: 3}\n"), HasSubstr("diagram:syntax 1:2"));
  EXPECT_THAT(first_problem("a: !!binary aGk=\n"), HasSubstr("diagram:syntax 1:4"));
}

TEST(YamlTree, RefusesBytesThatAreNoText) {
  EXPECT_EQ("diagram:encoding 2:4", first_problem("a: 1\nb: \xFF\n"));
  EXPECT_EQ("diagram:encoding 1:4", first_problem(std::string("a: \0b", 5)));
  EXPECT_EQ("diagram:encoding 1:1", first_problem("\x7F"
                                                  "ELF\x02\x01"));
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xC0\xAF"));          // overlong
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xED\xA0\x80"));      // half of a surrogate pair
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xF4\x90\x80\x80"));  // beyond the last character
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xE2\x82"));          // cut off
  EXPECT_EQ("none", first_problem("a: \xE2\x82\xAC \xF0\x9F\x98\x80 \xC3\xA4\n"));
}

TEST(YamlTree, DepthAndSizeHaveLimits) {
  EXPECT_EQ("none", first_problem(std::string(400, '[') + std::string(400, ']')));
  EXPECT_THAT(first_problem(std::string(100'000, '[')), HasSubstr("diagram:too-deep"));
  std::string laughs = "a0: &a0 [x, x]\n";
  for (int i = 1; i < 60; ++i) {
    const std::string inner = "*a" + std::to_string(i - 1);
    laughs += "a" + std::to_string(i) + ": &a" + std::to_string(i) + " [" + inner + ", " + inner + "]\n";
  }
  EXPECT_THAT(first_problem(laughs), HasSubstr("diagram:too-big"));
}

}  // namespace
}  // namespace kinemo::formats::diagram
