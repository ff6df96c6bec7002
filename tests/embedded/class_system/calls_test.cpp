#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/help.hpp"
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
  EXPECT_EQ(scripting_runtime::display_text(base_workspace().get("list")), "[1x3 test.Counter]");
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
  ASSERT_NE(scripting_runtime::find_help("test.Counter.plus"), nullptr);
  EXPECT_EQ(scripting_runtime::find_help("test.Counter")->summary, "A number.");
}

}  // namespace
}  // namespace embedded::class_system::test
