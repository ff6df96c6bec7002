// Functions that scripts lean on: sets, searches in texts, arrangement, output.

#include "tests/embedded/scripting_runtime/script_fixture.hpp"

#include <gmock/gmock.h>

namespace embedded::scripting_runtime {

namespace {

using testing::StartsWith;

class SessionFunctions : public ScriptTest {
 protected:
  void check(std::initializer_list<ValueCase> cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(value(one.text), one.expected) << one.text;
  }
};

TEST_F(SessionFunctions, Sets) {
  check({{"ismember(2, [1 2 3])", "logical(1)"},
         {"ismember([1 5; 3 9], [1 2 3])", "logical([1 0;1 0])"},
         {"ismember('b', {'a', 'b'})", "logical(1)"},
         {"ismember({'a', 'z'}, {'a', 'b'})", "logical([1 0])"},
         {"ismember(1, [])", "logical(0)"},
         {"union([3 1], [2 1])", "[1 2 3]"},
         {"intersect([3; 1; 1], [1; 3; 5])", "[1;3]"},
         {"setdiff(1:5, [2 4])", "[1 3 5]"},
         {"union([nan 2], [nan 1 2])", "[1 2 nan nan]"},
         {"setdiff([nan 3 1], [nan 3])", "[1 nan]"},
         {"intersect([nan 3 1], [nan 3])", "3"},
         {"sum(ismember(1:50000, nan(1, 50000)))", "0"},
         {"setdiff({'b', 'a'}, {'a'})", "{'b'}"},
         {"union({'b'}, {'a'})", "{'a','b'}"}});
  EXPECT_THAT(fault("ismember({'a'}, 1:3)"), StartsWith("CannotConcatenate("));
  run_script("[t, k] = ismember([5 7 6], [6 5 5]);", "s", workspace);
  EXPECT_EQ(value("k"), "[2 0 1]");
}

TEST_F(SessionFunctions, Texts) {
  check({{"contains('hello', 'ell')", "logical(1)"},
         {"contains({'ab', 'cd'}, {'b', 'x'})", "logical([1 0])"},
         {"startsWith('hello', 'hell')", "logical(1)"},
         {"startsWith('he', 'hell')", "logical(0)"},
         {"endsWith({'a.yaml', 'b.cir'}, '.cir')", "logical([0 1])"},
         {"strfind('abcabc', 'bc')", "[2 5]"},
         {"strfind('aaa', 'aa')", "[1 2]"},
         {"strfind('abc', 'x')", "[0x0]"},
         {"strncmp('hello', 'help', 3)", "logical(1)"},
         {"strncmp('he', 'help', 3)", "logical(0)"},
         {"str2double(' -1.5e3 ')", "-1500"},
         {"str2double('1 2')", "nan"},
         {"str2double('')", "nan"},
         {"str2double({'1', 'x', '+.5'})", "[1 nan 0.5]"},
         {"str2double('1e999') == inf", "logical(1)"},
         {"str2double('sin(1)')", "nan"},
         {"iscellstr({'a', 'b'})", "logical(1)"},
         {"iscellstr({'a', 1})", "logical(0)"}});
}

TEST_F(SessionFunctions, Arrangement) {
  check({{"horzcat([1; 2], [3; 4])", "[1 3;2 4]"},
         {"vertcat([1 2], [3 4])", "[1 2;3 4]"},
         {"vertcat()", "[0x0]"},
         {"fliplr([1 2; 3 4])", "[2 1;4 3]"},
         {"flipud({1; 'a'})", "{'a';1}"},
         {"[isrow(1:3) iscolumn(1:3) isvector(1:3) isvector([]) isvector(5)]", "logical([1 0 1 0 1])"},
         {"nnz([1 0; 2 nan])", "3"},
         {"median([3 1 2 10])", "2.5"},
         {"median([1 2; 3 4; 5 9])", "[3 4]"},
         {"std([2 4 4 4 5 5 7 9])", "2.138089935299395"},
         {"var([1 2; 3 4])", "[2 2]"},
         {"polyval([1 0 -1], [2 3])", "[3 8]"},
         {"trapz([1 2 3])", "4"},
         {"trapz([0 1 3], [0 1 1])", "2.5"},
         {"num2cell([1 2; 3 4])", "{1,2;3,4}"},
         {"num2cell('ab')", "{'a','b'}"},
         {"setfield(struct('a', 1), 'b', 2)", "struct(a=1 b=2 )"},
         {"rmfield(struct('a', 1, 'b', 2, 'c', 3), {'a', 'c'})", "struct(b=2 )"}});
  EXPECT_EQ(fault("rmfield(struct('a', 1), 'x')"), "NoSuchField(x)");
  EXPECT_THAT(fault("trapz([1 2], [1 2 3])"), StartsWith("SizeMismatch(trapz"));
}

TEST_F(SessionFunctions, Output) {
  EXPECT_EQ(shown("fprintf('%d,%s;', 1, 'ab', 2, 'cd'); fprintf('\\n')"), "1,ab;2,cd;\n");
  EXPECT_EQ(shown("fprintf(1, 'a'); fprintf(2, '%d\\n', 3);"), "a3\n");
  EXPECT_EQ(fault("fprintf(3, 'a')"), "UnknownStream(3)");
  EXPECT_EQ(shown("display(5)"), "ans = 5\n");
  EXPECT_EQ(shown("t = tic; e = toc(t); assert(e >= 0 && e < 100)"), "");
  EXPECT_THAT(shown("tic; toc"), StartsWith("Elapsed time is "));
  EXPECT_EQ(shown("clear; a = 1; c = who"), "c = {'a'}\n");
}

}  // namespace

}  // namespace embedded::scripting_runtime
