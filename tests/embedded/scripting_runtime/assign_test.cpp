#include "embedded/scripting_runtime/assign.hpp"

#include "tests/embedded/scripting_runtime/script_fixture.hpp"

#include <gmock/gmock.h>

namespace embedded::scripting_runtime {

namespace {

using testing::StartsWith;

class Assignment : public ScriptTest {
 protected:
  struct Case {
    const char* script;
    const char* expected;  ///< of the variable a
  };

  void check(std::initializer_list<Case> cases) {
    for (const Case& one : cases) {
      workspace.clear();
      EXPECT_EQ(fault(std::string(one.script) + ";"), "") << one.script;
      EXPECT_EQ(value("a"), one.expected) << one.script;
    }
  }

  /// The fault, after which the variable a must be as it was.
  void check_faults(std::initializer_list<ValueCase> cases) {
    for (const ValueCase& one : cases) {
      workspace.clear();
      const std::string text = one.text;
      const std::size_t last = text.rfind(';');
      ASSERT_EQ(fault(text.substr(0, last + 1)), "") << text;
      const std::string before = workspace.has("a") ? value("a") : "none";
      EXPECT_EQ(fault(text.substr(last + 1)), one.expected) << text;
      EXPECT_EQ(workspace.has("a") ? value("a") : "none", before) << text;
    }
  }
};

TEST_F(Assignment, ElementsRowsAndPages) {
  check({{"a = 1:3; a(2) = 7", "[1 7 3]"},
         {"a = [1 2; 3 4]; a(2, 1) = 9", "[1 2;9 4]"},
         {"a = [1 2; 3 4]; a(3) = 9", "[1 9;3 4]"},
         {"a = [1 2; 3 4]; a(:, 1) = [5; 6]", "[5 2;6 4]"},
         {"a = [1 2; 3 4]; a(1, :) = [5 6]", "[5 6;3 4]"},
         {"a = [1 2; 3 4]; a(:, 1) = [5 6]", "[5 2;6 4]"},
         {"a = [1 2; 3 4]; a(:) = 1:4", "[1 3;2 4]"},
         {"a = [1 2; 3 4]; a(:) = 0", "[0 0;0 0]"},
         {"a = 1:5; a(a > 2) = 0", "[1 2 0 0 0]"},
         {"a = 1:5; a(end) = 0", "[1 2 3 4 0]"},
         {"a = 1:5; a([1 end]) = [8 9]", "[8 2 3 4 9]"},
         {"a = zeros(2, 2, 2); a(1, 2, 2) = 5; a = a(:)'", "[0 0 0 0 0 0 5 0]"},
         {"a = zeros(2, 2, 2); a(2, 4) = 5; a = a(:)'", "[0 0 0 0 0 0 0 5]"},
         {"a = 1:3; a([]) = []", "[1 2 3]"},
         {"a = [1 2; 3 4]; a([1 2], :) = []", "[0x2]"},
         {"a = [1 2; 3 4]; a(:, [2 1]) = []", "[2x0]"},
         {"a = 1:3; a(logical([0 0 0])) = 5", "[1 2 3]"}});
}

TEST_F(Assignment, ArraysGrow) {
  check({{"a(3) = 1", "[0 0 1]"},
         {"a = []; a(end+1) = 4; a(end+1) = 5", "[4 5]"},
         {"a = [1; 2]; a(4) = 3", "[1;2;0;3]"},
         {"a = 5; a(2, 2) = 1", "[5 0;0 1]"},
         {"a = [1 2; 3 4]; a(3, 1) = 9", "[1 2;3 4;9 0]"},
         {"a = [1 2; 3 4]; a(:, 4) = 7", "[1 2 0 7;3 4 0 7]"},
         {"a(:, 1) = [1; 2]", "[1;2]"},
         {"a(2, :) = [1 2]", "[0 0;1 2]"},
         {"a = [1 2]; a(1, 2, 2) = 7; a = a(:)'", "[1 2 0 7]"},
         {"a = 'ab'; a(4) = 'x'; a = double(a)", "[97 98 0 120]"},
         {"a{3} = 'x'", "{[0x0],[0x0],'x'}"},
         {"a = {1}; a{2, 2} = 5", "{1,[0x0];[0x0],5}"},
         {"a = struct('x', 1); a(2).x = 5", "struct(x=1 ;x=5 )"},
         {"a(2).x = 5", "struct(x=[0x0] ;x=5 )"},
         {"a = true; a(3) = true", "logical([1 0 1])"}});
}

TEST_F(Assignment, ArraysKeepTheirClass) {
  check({{"a = int8([1 2]); a(1) = 300.7", "int8([127 2])"},
         {"a = [1 2]; a(1) = int8(5)", "[5 2]"},
         {"a = 'abc'; a(2) = 66", "'aBc'"},
         {"a = [true false]; a(2) = 5", "logical([1 1])"},
         {"a = [1 2]; a(2) = 3i", "[1+0i 0+3i]"},
         {"a(2) = int8(5)", "int8([0 5])"},
         {"a(3) = 'x'; a = double(a)", "[0 0 120]"},
         {"a = []; a(2) = {5}", "{[0x0],5}"},
         {"a = {1, 2}; a(2) = {5}", "{1,5}"},
         {"a = {1, 2}; a(:) = {0}", "{0,0}"},
         {"a(1) = @sin", "@sin"},
         {"a = []; a(2) = struct('x', 3)", "struct(x=[0x0] ;x=3 )"}});
}

TEST_F(Assignment, FieldsCellsAndElementsNest) {
  check({{"a.b(2).c = 5", "struct(b=struct(c=[0x0] ;c=5 ) )"},
         {"a.b.c.d = 1; a.b.c.e = 2", "struct(b=struct(c=struct(d=1 e=2 ) ) )"},
         {"a{2}.x{3} = 1", "{[0x0],struct(x={[0x0],[0x0],1} )}"},
         {"a.x = 1:3; a.x(end) = []", "struct(x=[1 2] )"},
         {"a.x = 1:3; a.x(end + 1) = 9", "struct(x=[1 2 3 9] )"},
         {"a = {1, [1 2 3]}; a{2}(2) = 7; a{end}(end) = 8", "{1,[1 7 8]}"},
         {"a.x = {1, 2}; a.x{end}(end + 1) = 3", "struct(x={1,[2 3]} )"},
         {"a = struct('x', {{1, 2}}); a(1).x{2} = 'b'", "struct(x={1,'b'} )"},
         {"n = 'dyn'; a.(n) = 1; a.([n '2']) = 2", "struct(dyn=1 dyn2=2 )"},
         {"a = {}; a{1}{2}{3} = 4", "{{[0x0],{[0x0],[0x0],4}}}"}});
}

TEST_F(Assignment, ElementsAreDeleted) {
  check({{"a = 1:5; a(2) = []", "[1 3 4 5]"},
         {"a = (1:3)'; a(2) = []", "[1;3]"},
         {"a = 1:5; a([1 end]) = []", "[2 3 4]"},
         {"a = 1:5; a(a > 3) = []", "[1 2 3]"},
         {"a = [1 2; 3 4; 5 6]; a(2, :) = []", "[1 2;5 6]"},
         {"a = [1 2; 3 4; 5 6]; a(:, 1) = []", "[2;4;6]"},
         {"a = [1 2; 3 4]; a(1:2, 2) = []", "[1;3]"},
         {"a = [1 2; 3 4]; a(1) = []", "[3 2 4]"},
         {"a = [1 2; 3 4]; a(:) = []", "[0x0]"},
         {"a = [1 2; 3 4]; a(:, :) = []", "[0x2]"},
         {"a = {1, 'b', 3}; a(2) = []", "{1,3}"},
         {"a = {1, 'b', 3}; a{2} = []", "{1,[0x0],3}"},
         {"a = struct('x', {1, 2, 3}); a(1) = []", "struct(x=2 ;x=3 )"},
         {"a = 'hello'; a(1) = []", "'ello'"}});
}

TEST_F(Assignment, ValuesKeepTheirUnits) {
  check({{"a = kinemo.Value([1 2], 'V'); a(2) = kinemo.Value(500, 'mV')", "[1 0.5] V"},
         {"a = kinemo.Value([1 2], 'V'); a(3) = kinemo.Value(3, 'V')", "[1 2 3] V"},
         {"a(2) = kinemo.Value(3, 'V')", "[0 3] V"},
         {"a = kinemo.Value([1 2 3], 'V'); a(1) = []", "[2 3] V"},
         {"a = kinemo.Value(1, 'V'); a.value = 5", "5 V"}});
  check_faults({{"a = kinemo.Value([1 2], 'V');a(2) = kinemo.Value(1, 'A')", "UnitsDiffer(=, V, A)"},
                {"a = kinemo.Value(1, 'V');a.unit = 'no such'", "InvalidUnit(no such)"},
                {"a = kinemo.Value([1 2], 'V');a.value2 = 1", "NoSuchProperty(value2, kinemo.Value)"}});
}

TEST_F(Assignment, FaultsLeaveTheVariableAsItWas) {
  check_faults({{"a = 1:3;a([1 2]) = [1 2 3]", "AssignmentMismatch(2, 1x3)"},
                {"a = [1 2; 3 4];a(:, 1) = [1 2 3]", "AssignmentMismatch(2x1, 1x3)"},
                {"a = [1 2; 3 4];a(7) = 1", "CannotGrow(7, 2x2)"},
                {"a = 1:3;a(0) = 1", "InvalidIndex(0)"},
                {"a = [];a{0} = 1", "InvalidIndex(0)"},
                {"a = 1:3;a(1.5) = 1", "InvalidIndex(1.5)"},
                {"a = 1:3;a(nan) = 1", "InvalidIndex(NaN)"},
                {"a = 1:3;a(2) = {1}", "CannotAssign(cell, double)"},
                {"a = {1};a(1) = 2", "ValueIntoCells(double)"},
                {"a = 1:3;a{2} = 1", "NotCell(double)"},
                {"a = 1:3;a.x = 1", "NoFields(x, double)"},
                {"a = 1:3;a(2).x = 1", "NoFields(x, double)"},
                {"a = struct('x', {1, 2});a.x = 1", "NotOneStructure(2)"},
                {"a = struct('x', {1, 2});a(1) = struct('y', 1)", "DifferentFields()"},
                {"a = struct('x', {1, 2});a(1:2).x = 1", "OnePlaceNeeded(2)"},
                {"a = {1, 2};a{:} = 1", "OnePlaceNeeded(2)"},
                {"a = 1:3;a(2)(1) = 1", "IndexOfIndex()"},
                {"a = 1:3;a(5) = []", "IndexOutOfRange(5, 3)"},
                {"a = [1 2; 3 4];a(1, 1) = []", "CannotDelete(2x2)"},
                {"a = true;a(1) = nan", "NanAsLogical()"},
                {"a = 'abc';a(1) = 1i", "CannotAssign(complex, char)"},
                {"a = @sin;a(2) = @cos", "CannotAssign(function_handle, function_handle)"},
                {"a.b = {1, 2};a.b{1}.c = 1", "NoFields(c, double)"},
                {"a.b = {1, 2};a.b{1}(2, 2, 2).c = 1", "NoFields(c, double)"},
                {"a.b.c = 1:3;a.b.c{2} = 5", "NotCell(double)"}});
}

// A million elements set one by one would take a copy each; the address of the numbers shows that there is none.
TEST_F(Assignment, WhatIsNotSharedIsWrittenInPlace) {
  run_script("a = ones(1, 1000); s.x{2}.y = ones(1, 1000);", "s", workspace);
  const auto inner = [&] {
    const cvArray_tag* x = cvGetField(workspace.get("s"), 0, "x");
    return cvGetDoubles(cvGetField(cvGetCell(x, 1), 0, "y"));
  };
  const double* before = cvGetDoubles(workspace.get("a"));
  const double* inner_before = inner();
  run_script("a(5) = 2; a(6) = a(5) + 1; s.x{2}.y(7) = 4; s.x{end}.y(end) = 5;", "s", workspace);
  EXPECT_EQ(cvGetDoubles(workspace.get("a")), before);
  EXPECT_EQ(inner(), inner_before);
  EXPECT_EQ(value("a(4:7)"), "[1 2 3 1]");
  EXPECT_EQ(value("s.x{2}.y([1 7 end])"), "[1 4 5]");
}

TEST_F(Assignment, SharedArraysAreCopiedBeforeTheyAreWritten) {
  run_script("a = 1:3; b = a; b(1) = 9; c = {a}; c{1}(2) = 8; s.x = c; s.x{1}(3) = 7; d = s; d.x{1}(1) = 0;", "s",
             workspace);
  EXPECT_EQ(value("{a, b, c{1}, s.x{1}, d.x{1}}"), "{[1 2 3],[9 2 3],[1 8 3],[1 8 7],[0 8 7]}");
}

TEST_F(Assignment, AnArrayCanBePutIntoItself) {
  run_script("c = {1, 2}; c{2} = c; c{2}{1} = 5; s.x = 1; s.y = s;", "s", workspace);
  EXPECT_EQ(value("c"), "{1,{5,2}}");
  EXPECT_EQ(value("s"), "struct(x=1 y=struct(x=1 ) )");
}

}  // namespace

}  // namespace embedded::scripting_runtime
