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

TEST(YamlTree, OnlyPlainWordsForNothingAreNothing) {
  DiagnosticList problems;
  const YamlTree tree("[null, Null, NULL, ~, {k: }, &x , 'null', \"\", ! null, nULL, null and void]", "f.yaml",
                      problems);
  ASSERT_NE(nullptr, tree.root());
  std::string kinds;
  for (const YamlNode* item : tree.root()->children) kinds += item->is_null() ? '0' : item->is_mapping() ? 'm' : 's';
  EXPECT_EQ("0000m0sssss", kinds);
  EXPECT_TRUE(tree.root()->children[4]->find("k")->is_null());
}

TEST(YamlTree, ColumnsCountBytesAndLinesEndAtLineFeeds) {
  EXPECT_EQ("diagram:syntax 1:9", first_problem("\"\u00E4\u00F6\": !!x 1"));
  EXPECT_EQ("diagram:syntax 3:8", first_problem("a: 1\r\nb: '\u20AC'\r\n\u00E4\u00F6: [!!x 1]\r\n"));
  EXPECT_EQ("diagram:syntax 2:4", first_problem("a: 'x\u2028y \u0085 z'\nb: !!x 1\n"));
}

TEST(YamlTree, FaultInTheMiddleOfSomethingNamesItsBeginning) {
  DiagnosticList problems;
  const YamlTree tree("\u00E4: 1\nb: [1, 2\nc: 3\n", "f.yaml", problems);
  ASSERT_EQ(1U, problems.all().size());
  const Diagnostic& problem = problems.all().front();
  EXPECT_EQ(3U, problem.line);
  ASSERT_EQ(1U, problem.notes.size());
  EXPECT_EQ(2U, problem.notes[0].place.line);
  EXPECT_EQ(4U, problem.notes[0].place.column);
  EXPECT_EQ("while parsing a flow sequence", problem.notes[0].text);
}

TEST(YamlTree, KeysAreComparedInMappingsOfAnySize) {
  std::string text = "k0: 0\n";
  for (int i = 1; i < 20; ++i) {
    DiagnosticList problems;
    const YamlTree tree(text + "k0: 1\nk0: 2\n", "f.yaml", problems);
    ASSERT_EQ(2U, problems.error_count()) << i;
    EXPECT_EQ(static_cast<std::size_t>(i + 1), problems.all()[0].line);
    EXPECT_EQ(1U, problems.all()[1].notes.at(0).place.line);
    text += "k" + std::to_string(i) + ": 0\n";
  }
  EXPECT_EQ("none", first_problem(text));
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
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xC0\xAF"));                 // overlong
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xED\xA0\x80"));             // half of a surrogate pair
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xF4\x90\x80\x80"));         // beyond the last character
  EXPECT_EQ("diagram:encoding 1:4", first_problem("a: \xE2\x82"));                 // cut off
  EXPECT_EQ("diagram:encoding 2:6", first_problem("\u00E4: 1\nb: \u00E4\uFFFE"));  // no character at all
  EXPECT_EQ("none", first_problem("a: \xE2\x82\xAC \xF0\x9F\x98\x80 \xC3\xA4\n"));
}

TEST(YamlTree, DepthAndSizeHaveLimits) {
  EXPECT_EQ("none", first_problem(std::string(6000, '[') + std::string(6000, ']')));
  EXPECT_EQ("diagram:too-deep 1:6001", first_problem(std::string(6001, '[') + std::string(6001, ']')));
  EXPECT_EQ("diagram:too-deep 1:6001", first_problem(std::string(100'000, '[')));
  std::string block;
  for (int i = 0; i < 3000; ++i) block += std::string(i, ' ') + "k:\n";
  EXPECT_EQ("none", first_problem(block));
  std::string laughs = "a0: &a0 [x, x]\n";
  for (int i = 1; i < 60; ++i) {
    const std::string inner = "*a" + std::to_string(i - 1);
    laughs += "a" + std::to_string(i) + ": &a" + std::to_string(i) + " [" + inner + ", " + inner + "]\n";
  }
  EXPECT_THAT(first_problem(laughs), HasSubstr("diagram:too-big"));
}

}  // namespace
}  // namespace kinemo::formats::diagram
