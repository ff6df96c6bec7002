#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/help_pages.hpp"
#include "embedded/scripting_runtime/script.hpp"
#include "tests/embedded/class_system/counter_class.hpp"

#include <gmock/gmock.h>

namespace embedded::class_system::test {
namespace {

using scripting_runtime::base_workspace;
using scripting_runtime::ValueCase;
using testing::ElementsAre;

/// Methods of objects in evaluated expressions; c is a counter at 5, list holds 1, 2, 3.
class MethodCalls : public ClassTest {
 protected:
  MethodCalls() {
    set("c", "test.Counter().plus(5)");
    base_workspace().set("list", three());
  }
};

TEST_F(MethodCalls, AreWrittenBehindADotOrAsFunctions) {
  for (const ValueCase& one : std::vector<ValueCase>{
           {"c.number", "5"},
           {"c.number()", "5"},
           {"c.number(1)", "5"},
           {"number(c)", "5"},
           {"c.plus(1).number", "6"},
           {"plus(c, 1, 2).plus(3).number", "11"},
           {"c.(['num' 'ber'])", "5"},
           {"feval('number', c)", "5"},
           {"feval(@number, c)", "5"},
           {"cellfun(@(x) x.number, {c, c.plus(1)})", "[5 6]"},
           {"list(2).number", "2"},
           {"list(end).plus(1).number", "4"},
           {"numel(list([1 3]))", "2"},
           {"list([1 3])(2).number", "3"},
           {"class(list)", "'test.Counter'"},
           {"[isa(c, 'test.Counter') isa(c, 'double') isobject(c)]", "logical([1 0 1])"},
           {"c.joined('a', 'b', 'c')", "'abc'"},
           {"c.joined", "''"},
           {"plus(1, 2)", "3"},
           {"test.Counter().number", "0"},
           {"test.Counter.number(c)", "5"},
           {"test.Counter.plus(c, 1, 2).number", "8"},
           {"feval(@test.Counter.plus, c, 1).number", "6"},
       }) {
    EXPECT_EQ(value_of(one.text), one.expected) << one.text;
  }
}

TEST_F(MethodCalls, TellWhatIsWrong) {
  for (const ValueCase& one : std::vector<ValueCase>{
           {"c.numbr", "NoSuchMethod(numbr, test.Counter) NearestName(number)"},
           {"c.numbr(1)", "NoSuchMethod(numbr, test.Counter) NearestName(number)"},
           {"c.zzzzzz", "NoSuchMethod(zzzzzz, test.Counter)"},
           {"c.plus", "classes:TooFewInputs(test.Counter.plus, 0, 1)"},
           {"c.plus(1, 2, 3)", "classes:TooManyInputs(test.Counter.plus, 3, 2)"},
           {"c.plus('a')", "classes:InputType(test.Counter.plus, 1, double, char)"},
           {"c.joined('a', 2)", "classes:InputType(test.Counter.joined, 2, char, double)"},
           {"list.number", "classes:NotOneObject(test.Counter, 3)"},
           {"list(4)", "IndexOutOfRange(4, 3)"},
           {"test.Counter(1)", "classes:TooManyInputs(test.Counter, 1, 0)"},
           {"c.number.x", "NoFields(x, double)"},
           {"c + 1", "NotNumeric(test.Counter)"},
           {"test.Counter.plus()", "classes:TooFewInputs(test.Counter.plus, 0, 2)"},
           {"test.Counter.plus(5, 1)", "classes:InputType(test.Counter.plus, 1, test.Counter, double)"},
       }) {
    EXPECT_EQ(error_of(one.text), one.expected) << one.text;
  }
  EXPECT_THAT(error_of("numbr(c)"), testing::EndsWith("NearestName(number)"));
}

TEST_F(MethodCalls, EmptyPlacesOfArraysAreErrors) {
  base_workspace().set("e", cvUniquePtr(omCreateCCOSMatrix(1, 1, "test.Counter")));
  EXPECT_EQ(error_of("e.number"), "classes:EmptyObject(test.Counter)");
  EXPECT_EQ(scripting_runtime::display_text(base_workspace().get("e")), "[1x1 test.Counter]");
}

TEST_F(MethodCalls, ObjectsShowThemselves) {
  EXPECT_EQ(scripting_runtime::display_text(base_workspace().get("c")), "Counter at 5");
  EXPECT_EQ(scripting_runtime::display_text(base_workspace().get("list")),
            "1x3 test.Counter:\n    (1,1): Counter at 1\n    (1,2): Counter at 2\n    (1,3): Counter at 3");
  set("many", "repmat(c, 4, 3)");
  const std::string many = scripting_runtime::display_text(base_workspace().get("many"));
  EXPECT_THAT(many, testing::EndsWith("    (2,3): Counter at 5\n    ... and 2 more"));
  set("none", "list([])");
  EXPECT_EQ(scripting_runtime::display_text(base_workspace().get("none")), "[0x0 test.Counter]");
}

/// The numbers of the counters in an array, or what is wrong with the statements that make it.
class ObjectArrays : public MethodCalls {
 protected:
  std::string after(const std::string& statements, const std::string& expression) {
    scripting_runtime::Workspace workspace;
    for (const char* name : {"c", "list"}) {
      workspace.set(name, cvUniquePtr(cvCreateSharedCopy(base_workspace().get(name))));
    }
    const std::string error = raised([&] { scripting_runtime::run_script(statements, "s", workspace); });
    if (!error.empty()) return error.substr(error.rfind(':', error.find('(')) + 1);
    const scripting_runtime::Scope scope(workspace);
    const cvUniquePtr numbers = scripting_runtime::evaluate("arrayfun(@(x) x.number, " + expression + ")", scope);
    return scripting_runtime::inline_text(numbers.get(), 80);
  }
};

TEST_F(ObjectArrays, JoinGrowAndShrink) {
  struct Case {
    const char* statements;
    const char* numbers;
  };
  for (const Case& one : std::vector<Case>{
           {"a = [c c];", "[5 5]"},
           {"a = [c; c.plus(1)];", "[5; 6]"},
           {"a = [list; list];", "[1 2 3; 1 2 3]"},
           {"a = [list, []];", "[1 2 3]"},
           {"a = [[] c list];", "[5 1 2 3]"},
           {"a = list; a(2) = c;", "[1 5 3]"},
           {"a = list; a([1 3]) = c;", "[5 2 5]"},
           {"a = list; a(5) = c;", "[1 2 3 0 5]"},
           {"a = list; a(2, :) = list;", "[1 2 3; 1 2 3]"},
           {"a = list; a(1:2) = a([2 1]);", "[2 1 3]"},
           {"a(3) = c;", "[0 0 5]"},
           {"a = list; a(2) = [];", "[1 3]"},
           {"a = [list; list]; a(:, 1) = [];", "[2 3; 2 3]"},
           {"a = list; a(:) = []; a(1) = c;", "5"},
           {"s.f = list; s.f(1) = []; a = s.f;", "[2 3]"},
           {"a = list'; a(end) = [];", "[1; 2]"},
           {"a = [list c 1];", "CannotConcatenate(test.Counter, double)"},
           {"a = [1 c];", "CannotConcatenate(double, test.Counter)"},
           {"a = [c test.Foreign()];", "CannotConcatenate(test.Counter, test.Foreign)"},
           {"a = [list; c];", "ConcatenationMismatch(1x3, 1x1)"},
           {"a = list; a(1) = 5;", "CannotAssign(double, test.Counter)"},
           {"a = list; a(4) = test.Foreign();", "CannotAssign(test.Foreign, test.Counter)"},
           {"a = 1:3; a(1) = c;", "CannotAssign(test.Counter, double)"},
           {"a = list; a(1:2) = list;", "AssignmentMismatch(2, 1x3)"},
           {"a = list; a(4) = [];", "IndexOutOfRange(4, 3)"},
       }) {
    EXPECT_EQ(after(one.statements, "a"), one.numbers) << one.statements;
  }
  EXPECT_EQ(after("a = list; b = a; a(1) = c;", "[b a]"), "[1 2 3 5 2 3]");
}

TEST_F(MethodCalls, ChainsOfCallsTakeNoObjectsAlong) {
  std::string text = "c";
  for (int i = 0; i < 100; ++i) text += ".plus(1)";
  EXPECT_EQ(value_of(text + ".number"), "105");
  EXPECT_EQ(omLiveObjectCount(), 4U);
}

TEST_F(MethodCalls, ClassesMethodsAndHelpAreListed) {
  EXPECT_THAT(scripting_runtime::class_names(), testing::Contains("test.Counter"));
  EXPECT_THAT(scripting_runtime::methods_of("test.Counter"), ElementsAre("joined", "number", "plus"));
  EXPECT_TRUE(scripting_runtime::methods_of("test.None").empty());
  EXPECT_THAT(scripting_runtime::help_text("test.Counter"),
              testing::EndsWith("  c = test.Counter()\nMethods:\n"
                                "  joined  All texts in one.\n  number  The number.\n  plus    A counter further on."));
  EXPECT_THAT(scripting_runtime::help_text("plus"), testing::StartsWith("plus: "));
  EXPECT_THAT(scripting_runtime::help_text("Joined"), testing::StartsWith("test.Counter.joined: All texts in one."));
  ASSERT_NE(scripting_runtime::find_help("test.Counter.plus"), nullptr);
  EXPECT_EQ(scripting_runtime::find_help("test.Counter")->summary, "A number.");
}

}  // namespace
}  // namespace embedded::class_system::test
