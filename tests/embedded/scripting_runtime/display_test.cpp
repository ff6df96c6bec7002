#include "embedded/scripting_runtime/display.hpp"

#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "tests/embedded/scripting_runtime/script_fixture.hpp"

#include <gmock/gmock.h>

namespace embedded::scripting_runtime {

namespace {

using testing::EndsWith;
using testing::HasSubstr;

class Display : public ScriptTest {};

TEST_F(Display, ValuesAreReadable) {
  const std::pair<std::string, std::string> cases[] = {
      {"x = 5", "x = 5\n"},
      {"x = -0.1", "x = -0.1\n"},
      {"x = pi", "x = 3.1416\n"},
      {"x = 1e10", "x = 10000000000\n"},
      {"x = 1.5e-7", "x = 1.5e-07\n"},
      {"x = [nan inf; -inf 1]", "x =\n    NaN    Inf\n   -Inf      1\n"},
      {"x = 2 - 3i", "x = 2-3i\n"},
      {"x = [1+2i, 3; -1i, 4.5]", "x =\n     1+2i     3+0i\n     0-1i   4.5+0i\n"},
      {"x = [1 -2; 30 4]", "x =\n    1   -2\n   30    4\n"},
      {"x = [pi; 100]", "x =\n     3.1416\n   100.0000\n"},
      {"x = [0.5 0.25]", "x =\n   0.50   0.25\n"},
      {"x = [1.5e6 2.25e7] + 0.5", "x =\n   1.0e+07 *\n   0.1500   2.2500\n"},
      {"x = [1e-5 2.5e-5]", "x =\n   1.0e-05 *\n   1.0   2.5\n"},
      {"x = [1e-9 1]", "x =\n   1e-09       1\n"},
      {"x = 99999.5", "x = 1.0000e+05\n"},
      {"x = 100000.5", "x = 1.0000e+05\n"},
      {"x = 12345.678", "x = 1.2346e+04\n"},
      {"x = 2.00001", "x = 2.0000\n"},
      {"x = 0.1 + 0.2", "x = 0.3\n"},
      {"x = single(0.1)", "x = 0.1\n"},
      {"x = 100000.5 - 2.000001i", "x = 1.0000e+05-2.0000i\n"},
      {"x = [1e5 + 0.25; 1e5 - 0.25]", "x =\n   1.0e+05 *\n   1.0000\n   1.0000\n"},
      {"x = [2.00001 3]", "x =\n   2.0000   3.0000\n"},
      {"x = {12345.678, [99999.5 1]}", "x = {1.2346e+04, [1.0000e+05 1]}\n"},
      {"x = uint64(1e16)", "x = 10000000000000000\n"},
      {"x = uint64([1 1e17])", "x =\n                    1   100000000000000000\n"},
      {"x = 2^53", "x = 9.0072e+15\n"},
      {"x = 1 > [0 2]", "x =\n   1   0\n"},
      {"x = uint8([1 200])", "x =\n     1   200\n"},
      {"x = []", "x = [](0x0)\n"},
      {"x = zeros(3, 0)", "x = [](3x0)\n"},
      {"x = int8(zeros(1, 0))", "x = [](1x0 int8)\n"},
      {"x = ''", "x = ''\n"},
      {"x = {}", "x = {}(0x0)\n"},
      {"x = 'it''s'", "x = 'it''s'\n"},
      {"x = ['ab'; 'cd']", "x =\n    'ab'\n    'cd'\n"},
      {"disp('ab')", "ab\n"},
      {"disp(['ab'; 'cd'])", "ab\ncd\n"},
      {"disp([1 2])", "   1   2\n"},
      {"x = @(a) a + 1", "x = @(a) a + 1\n"},
      {"x = {1, 'a'; [1 2; 3 4], {}}", "x = {1, 'a'; [1 2; 3 4], {}}\n"},
      {"x = {ones(9), struct('a', 1), @sin}", "x = {[9x9 double], [1x1 struct], @sin}\n"},
      {"x = struct('a', {1, 2}, 'bcd', {'é', 'yy'}, 'e', {{}, [1 2]})",
       "x = 1x2 struct:\n         a  bcd   e\n    (1)  1  'é'   {}\n    (2)  2  'yy'  [1 2]\n"},
      {"x = struct('a', {})", "x = 0x0 struct with fields:\n    a\n"},
      {"x = struct('a', {{1, ones(9)}, 2}); disp(x)",
       "1x2 struct:\n         a\n    (1)  {1, [9x9 double]}\n    (2)  2\n"},
      {"x = struct('a', {ones(9), 2}); disp(x)", "1x2 struct:\n(1)\n    a: [9x9 double]\n(2)\n    a: 2\n"},
      {"x = struct()", "x =\n    (a structure without fields)\n"},
      {"x.long = 'v'; x.s.t = [1 2 3]; x.s.u.w = 1; disp(x)",
       "    long: 'v'\n    s:\n        t: [1 2 3]\n        u:\n            w: 1\n"},
      {"x.t = ['a' 10 repmat('b', 1, 98)]", "x =\n    t: 'a\\n" + std::string(98, 'b') + "'\n"},
      {"x.t = repmat('b', 1, 201)", "x =\n    t: '" + std::string(200, 'b') + "...'\n"},
      {"x.t = {'a'; repmat('b', 1, 100)}", "x =\n    t: {'a'; '" + std::string(100, 'b') + "'}\n"},
      {"x.t = {1, repmat('b', 1, 60)}", "x =\n    t: {1, '" + std::string(60, 'b') + "'}\n"},
      {"x.t = {1, repmat('b', 1, 100)}", "x =\n    t: {1, '" + std::string(31, 'b') + "...'}\n"},
      {"x = {1, repmat('b', 1, 100)}", "x =\n    {1,1}: 1\n    {1,2}: '" + std::string(100, 'b') + "'\n"},
      {"x = ones(2, 1, 2)", "x =\n(:,:,1) =\n   1\n   1\n(:,:,2) =\n   1\n   1\n"},
      {"x = kinemo.Value(5, 'V')", "x = 5 V\n"},
      {"x = kinemo.Value([5 6], 'V')", "x =\n   5   6 V\n"},
  };
  for (const auto& [text, expected] : cases) {
    workspace.clear();
    EXPECT_EQ(shown(text), expected) << text;
  }
}

TEST_F(Display, LongArraysOfStructuresAreCut) {
  shown("n = num2cell(1:40); x = struct('name', n, 'text', repmat('b', 1, 50))");
  EXPECT_THAT(output(), HasSubstr("    (30)  30    'bbbbb"));
  EXPECT_THAT(output(), EndsWith("\n    ... and 10 more elements\n"));
  shown("disp(struct('first', n, 'b', repmat('b', 1, 50), 'c', repmat('c', 1, 50), 'd', repmat('d', 1, 50)))");
  EXPECT_THAT(output(), HasSubstr("bbbbb...'  'cc")) << "texts are cut where the elements are many";
  shown("disp(struct('a', {1, 2}, 'message', repmat('m', 1, 90)))");
  EXPECT_THAT(output(), HasSubstr("(2)\n    a:       2\n    message: 'mmm"));
}

TEST_F(Display, TheLongFormatShowsAllDigits) {
  const ValueCase cases[] = {
      {"pi", "ans = 3.141592653589793\n"},
      {"4700.1234", "ans = 4700.1234\n"},
      {"0.1 + 0.2", "ans = 0.3\n"},
      {"100000.5", "ans = 100000.5\n"},
      {"2^53", "ans = 9007199254740992\n"},
      {"single(pi)", "ans = 3.1415927\n"},
      {"[1/3; 100]", "ans =\n     0.3333333333333\n   100.0000000000000\n"},
      {"[1e5 + 0.25; 1e5 - 0.25]", "ans =\n   1.0e+05 *\n   1.0000025\n   0.9999975\n"},
      {"{pi}", "ans = {3.141592653589793}\n"},
      {"format short; pi", "ans = 3.1416\n"},
  };
  shown("format long");
  for (const ValueCase& one : cases) EXPECT_EQ(shown(one.text), one.expected) << one.text;
  shown("format long; format");
  EXPECT_EQ(shown("pi"), "ans = 3.1416\n");
  EXPECT_EQ(fault("format wide"), "UnknownFormat(wide)");
}

TEST_F(Display, WideMatricesAreShownByGroupsOfColumns) {
  display_limits().width = 20;
  EXPECT_EQ(shown("x = [1:7; 11:17]"),
            "x =\n Columns 1 through 4:\n    1    2    3    4\n   11   12   13   14\n"
            " Columns 5 through 7:\n    5    6    7\n   15   16   17\n");
  EXPECT_EQ(shown("1:4"), "ans =\n   1   2   3   4\n");
  EXPECT_EQ(shown("1:6"), "ans =\n Columns 1 through 5:\n   1   2   3   4   5\n Column 6:\n   6\n");
  display_limits().width = 30;
  EXPECT_EQ(shown("x = {'abcdefghij', 'klmnopqrst'}"), "x =\n    {1,1}: 'abcdefghij'\n    {1,2}: 'klmnopqrst'\n");
}

TEST_F(Display, LongArraysAreCut) {
  display_limits().lines = 3;
  EXPECT_EQ(shown("(1:5)'"), "ans =\n   1\n   2\n   3\n   ... and 2 more rows\n");
  EXPECT_EQ(shown("x = num2cell((1:30)')"),
            "x =\n    {1,1}: 1\n    {2,1}: 2\n    {3,1}: 3\n    ... and 27 more elements\n");
  display_limits().lines = 29;
  EXPECT_THAT(shown("x"), EndsWith("\n    {29,1}: 29\n    ... and 1 more element\n"));
  display_limits().lines = 3;
  EXPECT_EQ(shown("char({'a','b','c','d'})"), "ans =\n    'a'\n    'b'\n    'c'\n    ... and 1 more row\n");
  EXPECT_THAT(shown("1:1000000"), EndsWith("   ... and 999952 more columns\n"));
  EXPECT_LT(shown("ones(1000)").size(), 1000U);
  EXPECT_LT(shown("ones(1, 1, 100000)").size(), 1000U);
}

TEST_F(Display, NestingHasAnEnd) {
  std::string script = "c = {}; s.x = 1;";
  for (int i = 0; i < 2000; ++i) script += "c = {c}; s.x = s;";
  EXPECT_EQ(fault(script), "");
  EXPECT_LT(shown("c, s").size(), 2000U);
}

TEST_F(Display, ObjectsAreShownByTheirClassSystem) {
  class Graphs final : public ClassDispatch {
    std::optional<std::string> display_text(const cvArray_tag* object) const override {
      return cvIsA(object, "test.Graph") ? std::optional<std::string>("a graph") : std::nullopt;
    }
  };
  const Graphs graphs;
  set_class_dispatch(&graphs);
  workspace.set("g", cvUniquePtr(cvCreateObject("test.Graph")));
  workspace.set("o", cvUniquePtr(cvCreateObject("test.Other")));
  EXPECT_EQ(shown("g, disp(g), c = {g}; o"), "g = a graph\na graph\no = [1x1 test.Other]\n");
  set_class_dispatch(nullptr);
}

}  // namespace

}  // namespace embedded::scripting_runtime
