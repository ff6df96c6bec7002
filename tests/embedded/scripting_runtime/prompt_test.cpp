#include "embedded/scripting_runtime/prompt.hpp"

#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/completion.hpp"
#include "embedded/scripting_runtime/completion_texts.hpp"
#include "tests/embedded/scripting_runtime/script_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gmock/gmock.h>

namespace embedded::scripting_runtime {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class PromptTest : public ScriptTest {
 protected:
  std::string enter(const std::string& line) {
    output().clear();
    prompt.enter(line);
    return output();
  }

  Prompt prompt{workspace};
};

TEST_F(PromptTest, LinesAreRunOnceTheyAreWhole) {
  EXPECT_EQ(enter("a = [1"), "");
  EXPECT_STREQ(prompt.text(), ".. ");
  EXPECT_EQ(enter("2];"), "");
  EXPECT_STREQ(prompt.text(), ">> ");
  EXPECT_EQ(enter("a(2)"), "ans = 2\n");
  EXPECT_EQ(enter("b = 1 + ..."), "");
  EXPECT_EQ(enter("2"), "b = 3\n");
  EXPECT_EQ(enter("b = 4 ..."), "");
  EXPECT_EQ(enter(""), "b = 4\n");
}

TEST_F(PromptTest, ManyLinesAreReadOnceEach) {
  enter("a = {");
  for (int i = 0; i < 5000; ++i) prompt.enter("{1, 'two', (3)}");
  EXPECT_EQ(enter("}; size(a)"), "ans =\n   5000      1\n");
}

TEST_F(PromptTest, AnErrorIsToldAndThePromptLivesOn) {
  EXPECT_EQ(enter("a = nothere"),
            "error: there is no variable or function 'nothere'. [kinemo:scripting:runtime:UndefinedName]\n"
            "    a = nothere\n        ^\n");
  EXPECT_TRUE(prompt.failed());
  EXPECT_THAT(enter("a = 'open"), StartsWith("error: the text isn't closed"));
  EXPECT_EQ(enter("a = 1"), "a = 1\n");
  EXPECT_FALSE(prompt.exit_code());
  enter("exit(4)");
  EXPECT_EQ(prompt.exit_code(), 4);
}

TEST_F(PromptTest, LackOfMemoryIsAnErrorOfThePlaceThatNeedsIt) {
  kmf::register_corvane_function("devour", [](int, cvArray_tag**, int nIn, cvArray_tag**) {
    if (nIn > 0) throw std::length_error("too long");
    throw std::bad_alloc();
  });
  const std::string head =
      "error: There isn't enough memory for what is computed here. "
      "[kinemo:scripting:runtime:OutOfMemory]\n";
  EXPECT_EQ(enter("a = 1 + devour();"), head + "    a = 1 + devour()\n            ^\n");
  EXPECT_EQ(enter("[1 devour(2)]"), head + "    [1 devour(2)]\n       ^\n");
  EXPECT_THAT(enter("arrayfun(@(x) x + devour(), 1:3)"), StartsWith(head));
  EXPECT_EQ(enter("1 + 1"), "ans = 2\n");
  kmf::unregister_corvane_function("devour");
}

TEST_F(PromptTest, AbandonedLinesAreForgotten) {
  enter("a = {1, ...");
  EXPECT_TRUE(prompt.waits());
  prompt.abandon();
  EXPECT_FALSE(prompt.waits());
  EXPECT_EQ(enter("b = 2"), "b = 2\n");
  enter("c = {");
  output().clear();
  prompt.finish();
  EXPECT_THAT(output(), HasSubstr("the bracket '{' isn't closed"));
}

TEST_F(PromptTest, AnInterruptStopsOnlyWhatRuns) {
  kmf::register_corvane_function("test.interrupt", [](int, cvArray_tag**, int, cvArray_tag**) { request_interrupt(); });
  EXPECT_THAT(enter("test.interrupt(); x = arrayfun(@(x) x + 1, 1:1e7);"),
              StartsWith("error: The evaluation was stopped by the user."));
  std::string statements = "test.interrupt(); a = 0;";
  for (int i = 0; i < 1000; ++i) statements += "a = a + 1;";
  EXPECT_THAT(enter(statements), StartsWith("error: The evaluation was stopped by the user."));
  EXPECT_FALSE(workspace.has("x"));
  EXPECT_EQ(enter("1 + 1"), "ans = 2\n");
  kmf::unregister_corvane_function("test.interrupt");
}

TEST_F(PromptTest, AnInterruptStopsFunctionsThatTakeLong) {
  kmf::register_corvane_function("test.late", [](int, cvArray_tag** outputs, int, cvArray_tag** inputs) {
    request_interrupt();
    outputs[0] = cvCreateSharedCopy(inputs[0]);
  });
  for (const char* expression :
       {"ones(60) * test.late(ones(60))", "ones(60) ^ test.late(9)", "ones(1, 9999) + test.late(ones(1, 9999))",
        "ones(99) - test.late(ones(99, 1))", "sort(test.late(9999:-1:1))", "unique(test.late(9999:-1:1))",
        "exp(test.late(1:9999))", "polyval(1:99, test.late(1:99))", "interp1([1 2], [3 4], test.late(1:9999))",
        "sprintf('%g,', test.late(1:9999))", "str2num('[1 test.late(2) 3]')"}) {
    EXPECT_THAT(enter(std::string("x = ") + expression + ";"),
                StartsWith("error: The evaluation was stopped by the user."))
        << expression;
    EXPECT_FALSE(workspace.has("x")) << expression;
  }
  kmf::unregister_corvane_function("test.late");
}

class CompletionTest : public ScriptTest {
 protected:
  std::vector<std::string> candidates(const std::string& line) { return complete(line, workspace).candidates; }
};

TEST_F(CompletionTest, NamesOfVariablesAndFunctions) {
  run_script("strange = 1; s.alpha = 1; s.beta.gamma = 2; s.beta.delta = 3; v = kinemo.Value(1, 'V');", "s", workspace);
  EXPECT_THAT(candidates("x = strs"), ElementsAre("strsplit"));
  EXPECT_THAT(candidates("stra"), ElementsAre("strange"));
  EXPECT_EQ(complete("x = stra", workspace).begin, 4U);
  EXPECT_THAT(candidates("nothing_like_it"), IsEmpty());
  EXPECT_THAT(candidates("kin"), ElementsAre("kinemo."));
  EXPECT_THAT(candidates("kinemo.V"), ElementsAre("kinemo.Value"));
  EXPECT_THAT(candidates("1 + s."), ElementsAre("s.alpha", "s.beta"));
  EXPECT_THAT(candidates("s.beta.g"), ElementsAre("s.beta.gamma"));
  EXPECT_THAT(candidates("s.none.g"), IsEmpty());
  EXPECT_THAT(candidates("v.u"), ElementsAre("v.unit"));
  EXPECT_THAT(candidates("1."), IsEmpty());
  EXPECT_THAT(candidates(""), Contains("strange"));
  EXPECT_THAT(candidates("help sq"), ElementsAre("sqrt"));
  run_script("q = struct('left', {1, struct('inner', 2)}); k = {struct('zeta', 1), 5, q};", "s", workspace);
  for (const auto& [line, candidate] : std::vector<std::pair<std::string, std::string>>{
           {"q(1).", "q(1).left"},
           {"2 * q(i + 1).l", "q(i + 1).left"},
           {"q(end).left.", "q(end).left.inner"},
           {"q(1, 2).left.in", "q(1, 2).left.inner"},
           {"k{1}.", "k{1}.zeta"},
           {"f(k{3}(2).left.", "k{3}(2).left.inner"},
       }) {
    EXPECT_THAT(candidates(line), ElementsAre(candidate)) << line;
    EXPECT_EQ(line.compare(complete(line, workspace).begin, line.npos, candidate, 0,
                           line.size() - complete(line, workspace).begin),
              0)
        << line;
  }
  for (const char* line :
       {"k{2}.", "k{9}.", "k{0}.", "q{1}.", "q(9).left.", "none(1).", "q(", "q(1)", ")", "}.", "k{q(1)}."}) {
    EXPECT_THAT(candidates(line), Not(Contains(HasSubstr(").")))) << line;
  }
  EXPECT_EQ(common_beginning({"strcmp", "strcat"}), "strc");
}

TEST_F(CompletionTest, MethodsAndPackagesOfTheClassSystem) {
  class Graphs final : public ClassDispatch {
    std::vector<std::string> methods_of(const std::string& name) const override {
      return name == "test.Graph" ? std::vector<std::string>{"edges", "nodes"} : std::vector<std::string>();
    }
    std::vector<std::string> package_contents(std::string_view path) const override {
      return path.empty() ? std::vector<std::string>{"test"} : std::vector<std::string>{"Graph"};
    }
  };
  const Graphs graphs;
  set_class_dispatch(&graphs);
  workspace.set("g", cvUniquePtr(cvCreateObject("test.Graph")));
  EXPECT_THAT(candidates("g.no"), ElementsAre("g.nodes"));
  EXPECT_THAT(candidates("test.G"), ElementsAre("test.Graph"));
  EXPECT_THAT(candidates("tes"), ElementsAre("test."));
  EXPECT_EQ(shown("methods(g)"), "edges\nnodes\n");
  set_class_dispatch(nullptr);
}

TEST_F(CompletionTest, FilesInQuotes) {
  const kinemo::test::TemporaryFolder folder;
  folder.write("model one.yaml", "");
  folder.write("model_two.yaml", "");
  folder.write(".hidden", "");
  const std::string path = folder.path().string() + "/";
  EXPECT_THAT(candidates("f('" + path + "mod"), ElementsAre(path + "model one.yaml", path + "model_two.yaml"));
  EXPECT_THAT(candidates("f(x', \"" + path), Not(Contains(path + ".hidden")));
  EXPECT_THAT(candidates("f('" + path + "model one.yaml', strs"), ElementsAre("strsplit"));
  EXPECT_THAT(candidates("f('/nowhere/at/all"), IsEmpty());
}

TEST_F(CompletionTest, TextsThatAFunctionKnows) {
  std::vector<std::string> asked;
  set_text_candidates([&](const TypedText& typed) {
    asked.push_back(typed.function + " " + std::to_string(typed.argument) + " " + typed.text);
    return typed.text == "it's" ? std::vector<std::string>{"it's so", "it's a"} : std::vector<std::string>();
  });
  EXPECT_THAT(candidates("x = f({1, 2}, g(3)', 'it''s"), ElementsAre("it''s a", "it''s so"));
  EXPECT_EQ(complete("f('it''s", workspace).begin, 3U);
  EXPECT_THAT(candidates("f(\"a\", \"it's"), ElementsAre("it's a", "it's so"));
  EXPECT_THAT(candidates("a.b.c(x(1, 2), [1, 2], '/none"), IsEmpty());
  EXPECT_THAT(candidates("'/none"), IsEmpty());
  candidates("f('a') % 'b");
  EXPECT_THAT(asked, ElementsAre("f 2 it's", "f 0 it's", "f 1 it's", "a.b.c 2 /none", " 0 /none"));
  set_text_candidates({});
}

}  // namespace

}  // namespace embedded::scripting_runtime
