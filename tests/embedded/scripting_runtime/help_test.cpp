#include "embedded/scripting_runtime/help.hpp"

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/help_texts.hpp"
#include "tests/embedded/scripting_runtime/script_fixture.hpp"

#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>

namespace embedded::scripting_runtime {

namespace {

using testing::HasSubstr;

class HelpTest : public ScriptTest {};

TEST_F(HelpTest, EveryBuiltInFunctionHasOne) {
  std::set<std::string> names;
  for (const Builtin& builtin : builtins()) {
    EXPECT_TRUE(names.insert(builtin.name).second) << builtin.name << " is there twice";
    const Help* help = find_help(builtin.name);
    if (help == nullptr) {
      ADD_FAILURE() << builtin.name << " has no help";
      continue;
    }
    EXPECT_THAT(help->usage, HasSubstr(builtin.name));
    EXPECT_GT(help->summary.size(), 2U) << builtin.name;
    const bool inputs_in_usage =
        help->usage.find('(') != std::string::npos || help->usage.find(' ') != std::string::npos;
    EXPECT_TRUE(builtin.least_inputs == 0 || inputs_in_usage) << builtin.name << " needs inputs";
  }
  for (const HelpArea& area : built_in_help()) {
    for (const HelpRow& row : area.rows) EXPECT_EQ(names.count(row.name), 1U) << "no function " << row.name;
  }
}

TEST_F(HelpTest, IsShownByNameWithNearNamesForUnknownOnes) {
  EXPECT_EQ(shown("help mean"), "mean: Mean values along a dimension.\n  m = mean(x)\n  m = mean(x, d)\n");
  EXPECT_THAT(shown("help('interp1')"), HasSubstr("'extrap'"));
  EXPECT_THAT(shown("help meen"), HasSubstr("There is no help for 'meen'. [kinemo:scripting:runtime:NoHelp]"));
  EXPECT_THAT(output(), HasSubstr("note: Did you mean 'mean'?"));
}

TEST_F(HelpTest, IsFoundForAreasPackagesAndShortNames) {
  set_help("test.pack.f", {"y = test.pack.f(x)", "A function of a package.", ""});
  set_help("test.other.f", {"y = test.other.f(x)", "Another one.", ""});
  kmf::register_corvane_function("test.pack.f", [](int, cvArray_tag**, int, cvArray_tag**) {});
  EXPECT_EQ(shown("help test.pack"), "test.pack: A package.\nIn it:\n  f  A function of a package.\n");
  EXPECT_EQ(shown("help F"),
            "Several have the name 'F':\n  test.other.f  Another one.\n  test.pack.f   A function of a package.\n");
  EXPECT_THAT(shown("help('linear algebra')"), HasSubstr("Linear algebra:\n  cross  "));
  EXPECT_EQ(shown("methods test.pack"), "f\n");
  EXPECT_EQ(shown("v = kinemo.Value(1, 'V'); help v"), shown("help kinemo.Value"));
  EXPECT_THAT(shown("methods test.pac"), HasSubstr("[kinemo:scripting:runtime:NoMethods]"));
  EXPECT_THAT(shown("c = methods(5)"), HasSubstr("There is no class and no package 'double' that has methods."));
  kmf::unregister_corvane_function("test.pack.f");
  forget_help("test.pack.f");
  forget_help("test.other.f");
}

TEST_F(HelpTest, IsAsWideAsTheDisplay) {
  set_help("test.wide", {"y = test.wide(x)", "One µ two three four five.", "Six seven eight nine ten.\n  Eleven"});
  display_limits().width = 20;
  EXPECT_EQ(shown("help test.wide"),
            "test.wide: One µ two\nthree four five.\n  y = test.wide(x)\nSix seven eight nine\nten.\n  Eleven\n");
  forget_help("test.wide");
}

TEST_F(HelpTest, OverviewListsAllTopicsByArea) {
  set_help("test.pack.f", {"y = test.pack.f(x)", "A function of a package.", ""});
  const std::string overview = shown("help");
  EXPECT_THAT(overview, HasSubstr("\ntest.pack\n  test.pack.f\n"));
  std::istringstream words(overview);
  const std::set<std::string> all{std::istream_iterator<std::string>(words), {}};
  for (const std::string& topic : help_topics()) EXPECT_EQ(all.count(topic), 1U) << topic;
}

/// The tables of docs/scripting.md: one for each area.
std::string documented() {
  std::string text;
  for (const HelpArea& area : built_in_help()) {
    text += "\n### " + area.title + "\n\n| function | |\n|---|---|\n";
    for (const HelpRow& row : area.rows) {
      std::string usage = row.usage;
      for (std::size_t at = 0; (at = usage.find('\n', at)) != std::string::npos;) usage.replace(at, 1, "`<br>`");
      std::string summary = row.summary;
      for (std::size_t at = 0; (at = summary.find('|', at)) != std::string::npos; at += 2) summary.insert(at, "\\");
      text += "| `" + usage + "` | " + summary + " |\n";
    }
  }
  return text + "\n";
}

TEST_F(HelpTest, DocumentationListsTheSameFunctions) {
  std::ifstream in(KINEMO_SOURCE_DIR "/docs/scripting.md");
  std::ostringstream page;
  page << in.rdbuf();
  const std::string begin = "<!-- functions: begin -->\n";
  const std::size_t from = page.str().find(begin);
  const std::size_t to = page.str().find("<!-- functions: end -->");
  ASSERT_NE(to, std::string::npos);
  EXPECT_EQ(page.str().substr(from + begin.size(), to - from - begin.size()), documented())
      << "docs/scripting.md should have between its marks:\n"
      << documented();
}

}  // namespace

}  // namespace embedded::scripting_runtime
