#include "embedded/scripting_runtime/script.hpp"

#include "tests/embedded/scripting_runtime/script_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gmock/gmock.h>

namespace embedded::scripting_runtime {

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class Script : public ScriptTest {};

TEST_F(Script, StatementsShowWhatTheySetUnlessSilent) {
  const ValueCase cases[] = {
      {"1 + 1", "ans = 2\n"},
      {"1 + 1;", ""},
      {"", ""},
      {" ; , \n\n% only a comment\n# and another", ""},
      {"a = 1, b = 2; c = 3", "a = 1\nc = 3\n"},
      {"a = 5; a", "a = 5\n"},
      {"'text' % comment; with = all", "ans = 'text'\n"},
      {"a = [1, 2\n3, 4];a(2,:)", "ans =\n   3   4\n"},
      {"a = 1 + ...  the rest\n  2", "a = 3\n"},
      {"a = 1\n  %{\nb = ' (\n#{\n%}\nb = 2\n %} \r\nc = [1\n%{\n2\n%}\n3]'", "a = 1\nc =\n   1   3\n"},
      {"a = 1 %{\n%{ b\nb = 2\n%}", "a = 1\nb = 2\n"},
      {"%{\n%}\n  nothere",
       "s:3:3: error: there is no variable or function 'nothere'. "
       "[kinemo:scripting:runtime:UndefinedName]\n    nothere\n    ^\n"},
      {"a = 1;\n %{\nb",
       "s:2:2: error: the bracket '%{' isn't closed. "
       "[kinemo:scripting:expression:UnclosedBracket]\n     %{\n     ^\n"},
      {"a = f = 1;",
       "s:1:7: error: '=' has no meaning in an expression. "
       "[kinemo:scripting:expression:UnexpectedCharacter]\n    a = f = 1;\n          ^\n"},
      {"a = 3; a == 3", "ans = 1\n"},
      {"f = @(x) x, f(4)", "f = @(x) x\nans = 4\n"},
      {"c = {1, 'b'}; c{:}", "ans = 1\nans = 'b'\n"},
      {"disp(7)", "7\n"},
      {"a.('b c') = 1; a.('b c')", "ans = 1\n"},
      {"x = {'it''s', \"a;b,c\"}", "x = {'it''s', 'a;b,c'}\n"},
      {"[m, k] = max([3 9 2]);m,k", "m = 9\nk = 2\n"},
      {"[~, k] = max([3 9 2])", "k = 2\n"},
      {"[s.a, t{2}] = deal(4, 5);s.a + t{2}", "ans = 9\n"},
      {"[a b] = deal(1)", "a = 1\nb = 1\n"},
      {"c = {4, 5}; [a, b] = c{:};b", "b = 5\n"},
      {"clear = 4", "clear = 4\n"},
      {"a = char([27 91 7 0 127 155 233 10])", "a = '\\x1b[\\x07\\x00\\x7f\\x9bé\n'\n"},
      {"c = {char(27)}", "c = {'\\x1b'}\n"},
      {"disp(char([27 91]))", "\x1b[\n"},
      {"a = 1; clear a; exist('a')", "ans = 0\n"},
      {"exist sin", "ans = 5\n"},
      {"bb = 1; a = 2; who", "a   bb\n"},
      {"bb = 1; ab = 2; abc = 3; who b* a*c", "abc  bb\n"},
      {"bb = 1; ab = 2; who ab nothere", "ab\n"},
      {"bb = 1; ab = 2; whos ab", "  Name  Size  Class\n  ab     1x1  double\n"},
      {"a = int8([1 2]); whos", "  Name  Size  Class\n  a      1x2  int8\n"},
  };
  for (const ValueCase& one : cases) {
    workspace.clear();
    EXPECT_EQ(shown(one.text), one.expected) << one.text;
  }
}

TEST_F(Script, ErrorsTellFileLineColumnAndPlace) {
  const ValueCase cases[] = {
      {"a = 1;\n  b = a + nothere",
       "s:2:11: error: there is no variable or function 'nothere'. "
       "[kinemo:scripting:runtime:UndefinedName]\n    b = a + nothere\n            ^\n"},
      {"x = [1\n2 +\n];",
       "s:2:4: error: the line ends within the expression. '...' continues it on the next line. "
       "[kinemo:scripting:expression:UnexpectedLineEnd]\n    2 +\n       ^\n"},
      {"a = 1;\nb = {1, (2\nc = 3\n",
       "s:2:5: error: the bracket '{' isn't closed. "
       "[kinemo:scripting:expression:UnclosedBracket]\n    b = {1, (2\n        ^\n"},
      {"a = 2)",
       "s:1:6: error: ')' isn't expected here. "
       "[kinemo:scripting:expression:UnexpectedToken]\n    a = 2)\n         ^\n"},
      {"a = 1;\nb = 'open\n",
       "s:2:5: error: the text isn't closed by another '. "
       "[kinemo:scripting:expression:UnterminatedText]\n    b = 'open\n        ^\n"},
      {"a =",
       "s:1:4: error: the expression ends where an operand is missing. "
       "[kinemo:scripting:expression:UnexpectedEnd]\n    a =\n       ^\n"},
      {"'é', a = [1 2](3)",
       "ans = 'é'\ns:1:15: error: The index 3 is beyond the last of 2 elements. "
       "[kinemo:scripting:runtime:IndexOutOfRange]\n    a = [1 2](3)\n             ^\n"},
      {"error('my:own', '%d left', 3)", "s:1:1: error: 3 left [my:own]\n    error('my:own', '%d left', 3)\n    ^\n"},
      {"assert(1 == 1); assert(false, 'no %s', 'way')",
       "s:1:17: error: no way [kinemo:scripting:runtime:UserError]\n    assert(false, 'no %s', 'way')\n    ^\n"},
      {"assert(0)",
       "s:1:1: error: The assertion failed. [kinemo:scripting:runtime:AssertionFailed]\n"
       "    assert(0)\n    ^\n"},
      {"foo = 3;\nfoa",
       "s:2:1: error: there is no variable or function 'foa'. "
       "[kinemo:scripting:runtime:UndefinedName]\n    foa\n    ^\n  note: Did you mean 'foo'?\n"},
  };
  for (const ValueCase& one : cases) EXPECT_EQ(shown(one.text), one.expected) << one.text;
}

TEST_F(Script, ControlCharactersAreNamedByTheirCodes) {
  for (const auto& [character, name] : {std::pair('\0', "00"), {'\x1b', "1b"}, {'\x7f', "7f"}}) {
    EXPECT_EQ(shown(std::string("a = ") + character + "1"),
              std::string("s:1:5: error: '\\x") + name +
                  "' has no meaning in an expression. [kinemo:scripting:expression:UnexpectedCharacter]\n"
                  "    a =  1\n        ^\n");
  }
}

TEST_F(Script, WordsOfOtherLanguagesAreRefused) {
  for (const std::string& word : reserved_words()) {
    EXPECT_THAT(fault("a = 1;\n" + word + " x"), StartsWith("NotInLanguage(" + word + ", 2, 1")) << word;
  }
  EXPECT_FALSE(workspace.has("a")) << "nothing runs where something can't be read";
}

TEST_F(Script, OnlyPlacesCanBeAssignedTo) {
  EXPECT_THAT(fault("1 = 2"), StartsWith("NotAssignable(1, 1, 1"));
  EXPECT_THAT(fault("a' = 2"), StartsWith("NotAssignable(a', 1, 1"));
  EXPECT_THAT(fault("[] = size(1)"), StartsWith("NotAssignable([], 1, 1"));
  EXPECT_THAT(fault("[a, b+c] = size(1)"), StartsWith("NotAssignable(b+c, 1, 5"));
  EXPECT_THAT(fault("= 2"), StartsWith("UnexpectedCharacter(=, 1, 1"));
  EXPECT_EQ(fault("c = {1}; [a, b] = c{:}"), "TooFewValues(1, 2)");
  EXPECT_EQ(fault("a = disp(1)"), "TooManyOutputs(disp, 1)");
}

TEST_F(Script, PlacesInFunctionsAreThoseOfTheScript) {
  EXPECT_THAT(shown("a = 1;\n\nf = @(x) x + ones(2)*ones(3);\nf(1)"), HasSubstr("s:4:2: error: The sizes 2x2 and 3x3"));
  EXPECT_THAT(output(), HasSubstr("note: in s, line 3, column 21:"));
}

TEST_F(Script, CallsForElementsAskForNothingAsStatements) {
  const ValueCase cases[] = {
      {"arrayfun(@disp, 1:2)", "1\n2\n"},
      {"cellfun(@(t) fprintf('%s;', t), {'a', 'b'})", "a;b;"},
      {"cellfun(@(t) evalin('base', t), {'disp(1)', 'disp(2)'})", "1\n2\n"},
      {"f = @(k) disp(k); g = @(k) f(k); arrayfun(g, 1:2);", "1\n2\n"},
      {"arrayfun(@(k) k^2, 1:3)", "ans =\n   1   4   9\n"},
      {"arrayfun(@(k) k > 1, 1:3); class(ans)", "ans = 'logical'\n"},
      {"arrayfun(@(k) kinemo.Value(k, 'V'), 1:2)", "ans =\n   1   2 V\n"},
      {"cellfun(@(t) [t t], {'a', 'b'})", "ans = {'aa', 'bb'}\n"},
      {"cellfun(@(x) x, {1, 'ab'})", "ans = {1, 'ab'}\n"},
      {"iff(1 < 2, @() disp('yes'), @() disp('no'))", "yes\n"},
      {"iff(1 > 2, @() disp('yes'))", ""},
      {"n = 0; y = iff(n > 0, @() undefined_thing / n, @() -1)", "y = -1\n"},
      {"arrayfun(@(k) iff(k > 2, @() disp(k)), 1:3)", "3\n"},
  };
  for (const ValueCase& one : cases) {
    workspace.clear();
    EXPECT_EQ(shown(one.text), one.expected) << one.text;
  }
  EXPECT_THAT(shown("x = arrayfun(@(k) disp(k), 1:3)"),
              AllOf(StartsWith("1\ns:1:5: error: 'disp' doesn't give as many results as are asked for, here 1."),
                    HasSubstr("  note: This is call 1 of 3 by 'arrayfun'.\n")));
  for (const char* text : {"cellfun(@(x) x, {1, 'a'})", "x = cellfun(@(x) x, {1, 'a'})"}) {
    EXPECT_EQ(fault(text), "MixedClasses(cellfun, char, 2, double)") << text;
  }
  EXPECT_EQ(fault("x = arrayfun(@(k) iff(k > 1, @() true, @() 0), 1:2)"), "MixedClasses(arrayfun, logical, 2, double)");
  EXPECT_EQ(fault("y = iff(false, @() 1)"), "NoValue()");
}

TEST_F(Script, FaultsInFunctionsTellTheirPlaceOnce) {
  const kinemo::test::TemporaryFolder folder;
  const std::string library = folder.write("lib.kin", "\n  f = @(a) a.x + 1; g = @(a) a + nothere;\n").string();
  const ValueCase cases[] = {
      {"f = @(x, y) x + y; f(1)",
       "error: The input 'y' of the function isn't given: it was called with 1. "
       "[kinemo:scripting:runtime:InputNotGiven]\n    f(1)\n     ^\n"
       "  note: Line 1, column 17:\n    f = @(x, y) x + y\n                    ^\n"},
      {"y = 5; f = @(x, y) x + y; f(1)", "The input 'y' of the function isn't given"},
      {"cellfun(@(x) nosuch(x), {1, 2})",
       "error: there is no variable or function 'nosuch'. [kinemo:scripting:runtime:UndefinedName]\n"
       "    cellfun(@(x) nosuch(x), {1, 2})\n    ^\n"
       "  note: Line 1, column 14:\n    cellfun(@(x) nosuch(x), {1, 2})\n                 ^\n"
       "  note: This is call 1 of 2 by 'cellfun'.\n"},
  };
  for (const ValueCase& one : cases) {
    workspace.clear();
    EXPECT_THAT(shown(one.text, ""), HasSubstr(one.expected)) << one.text;
  }
  shown("run('" + library + "')", "");
  EXPECT_THAT(shown("f(3)", ""), HasSubstr("note: in " + library + ", line 2, column 13:\n    f = @(a) a.x + 1\n"));
  EXPECT_THAT(shown("g(3)", "outer"),
              AllOf(StartsWith("outer:1:2: error: there is no variable or function 'nothere'. ["),
                    HasSubstr("note: in " + library + ", line 2, column 34:\n    g = @(a) a + nothere\n")));
}

TEST_F(Script, ScriptsRunInTheWorkspaceOfTheirCallers) {
  const kinemo::test::TemporaryFolder folder;
  const std::string inner = folder.write("inner.kin", "b = a + 1;\nc = b + nothere;\n").string();
  const std::string text = shown("a = 1;\nrun('" + inner + "')", "outer");
  EXPECT_THAT(text, StartsWith(inner + ":2:9: error: there is no variable or function 'nothere'"));
  EXPECT_THAT(text, HasSubstr("note: in outer, line 2, column 1:"));
  EXPECT_EQ(value("b"), "2");
  EXPECT_EQ(fault("run nothere.kin"), "CannotReadScript(nothere.kin)");
}

TEST_F(Script, EndlessRecursionIsAnError) {
  const kinemo::test::TemporaryFolder folder;
  const std::string file = (folder.path() / "self.kin").string();
  folder.write("self.kin", "run('" + file + "')\n");
  EXPECT_THAT(fault("run('" + file + "')"), StartsWith("TooDeeplyNested("));
  EXPECT_THAT(fault("g = @(g) feval(g, g); g(g)"), StartsWith("TooDeeplyNested("));
  EXPECT_THAT(fault("h = @(h) arrayfun(@(x) h(h), 1); h(h)"), StartsWith("TooDeeplyNested("));
  EXPECT_THAT(fault("e = 'evalin(''base'', e)'; evalin('base', '1 + 1');"), "");
}

TEST_F(Script, TooLargeArraysAreAnError) {
  for (const char* text :
       {"a(1e12) = 1", "a = 1:3; a(1e300) = 1", "c{1e12} = 1", "s(1e12).x = 1", "s(1, 1e12).x = 1",
        "t = 'a'; t(1e12) = 'b'", "ones(1e6, 1e6)", "repmat('ab', 1, 1e12)", "1:1e12", "linspace(0, 1, 1e12)",
        "cell(1e6, 1e6)", "a = 1; a(1e6, 1e6) = 3", "x = sprintf('%1000000d', 1:1e4);"}) {
    workspace.clear();
    limits().array_bytes = 100'000'000;
    EXPECT_THAT(fault(text), StartsWith("ArrayTooLarge(")) << text;
  }
  EXPECT_THAT(fault("x = 1; x(ones(1, 9999), ones(1, 9999)) = 2;"), testing::StartsWith("ArrayTooLarge(9999x9999,"));
  limits().array_bytes = 1000;
  EXPECT_THAT(fault("x = ones(1, 100); y = [x x]"), StartsWith("ArrayTooLarge("));
  EXPECT_THAT(fault("c = 'abcdefghij'; c = strcat(c, c, c, c, c, c, c, c, c, c, c, c, c, c)"),
              StartsWith("ArrayTooLarge("));
}

TEST_F(Script, ExitEndsWithItsCode) {
  EXPECT_EQ(fault("x = str2num('exit(3)');"), "ExitRequest(3)");
  for (const auto& [text, code] : {std::pair("a = 1; exit; a = 2", 0), {"exit(7)", 7}, {"quit 3", 3}}) {
    try {
      run_script(text, "s", workspace);
      ADD_FAILURE() << text;
    } catch (const ExitRequest& request) {
      EXPECT_EQ(request.code(), code) << text;
    }
  }
  EXPECT_EQ(value("a"), "1");
  for (const std::string code : {"'a'", "''", "'3a'", "256", "-1", "1.5", "NaN", "Inf", "1+2i"}) {
    EXPECT_EQ(fault("exit(" + code + ")"), "InvalidExitCode(" + code + ")");
  }
}

TEST_F(Script, MarksOfEncodingsAreKnown) {
  EXPECT_EQ(shown("\xEF\xBB\xBF"
                  "a = 1"),
            "a = 1\n");
  EXPECT_THAT(shown("\xEF\xBB\xBF"
                    "1 + nothere"),
              StartsWith("s:1:5: error: there is no variable"));
  for (const char* text : {"\xFF\xFE"
                           "a",
                           "\xFE\xFF"
                           "a"}) {
    EXPECT_EQ(shown(text),
              "s:1:1: error: The script is written in UTF-16. Save it as UTF-8. "
              "[kinemo:scripting:runtime:WrongEncoding]\n");
  }
}

/// Whether the last line of a text asks for more; all before it must.
bool is_incomplete(const std::string& text) {
  IncompleteText incomplete;
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
    EXPECT_TRUE(incomplete.needs_more(text.substr(begin, end - begin))) << text;
    begin = end + 1;
  }
  return incomplete.needs_more(text.substr(begin));
}

TEST_F(Script, WholeTextsAreToldFromBegunOnes) {
  for (const char* text : {"a = (1", "a = [1\n2", "c = {", "a = 1 + ...", "f(1, ... more", "a = [1 ...", "f(a\n', [b",
                           "c = {\n'a', [1", "%{", "%{\n%{\n%}", "a = [1\n%{\n2", "a = [1\n%{\n]\n%}"}) {
    EXPECT_TRUE(is_incomplete(text)) << text;
  }
  for (const char* text :
       {"", "a = 1", "a = [1\n2]", "a = 'x...", "a = 1 % ...", "a = 1 + ...\n", "a = 2)", "a = 1) + (", "'...'",
        "a = 'open (", "f(a\n')", "c = {\n'a)'}", "a = [b ...\n' c']", "%{\n%}", "a %{", "a = [1\n%{\n(\n%}\n]"}) {
    EXPECT_FALSE(is_incomplete(text)) << text;
  }
}

TEST_F(Script, ALongScriptIsReadInOneGo) {
  std::string text;
  for (int i = 0; i < 20000; ++i) text += "f = @(x) x + 1;\n";
  EXPECT_EQ(fault(text + "f(1) + nothere"), "UndefinedName(nothere, 20001, 8, f(1) + nothere\n       ^)");
}

}  // namespace

}  // namespace embedded::scripting_runtime
