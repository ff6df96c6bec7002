#include "common/gl/gti/src/kernel/scripting/function_table.hpp"

#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "embedded/environment/kernel_functions.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "embedded/scripting_runtime/help_pages.hpp"
#include "platform/block_diagram/port.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"

namespace gl::gti::test {
namespace {

using embedded::scripting_runtime::base_workspace;
using embedded::scripting_runtime::evaluate;
using embedded::scripting_runtime::Scope;
using kinemo::test::error_of;

/// A core block x with the ports "in" and "out", whose kind can't log, beside a subsystem.
class FunctionTable : public CoreBlockTest {
 protected:
  FunctionTable() {
    descriptor().addLeftPort("in", u"", "liquid", u"");
    descriptor().addRightPort("out", u"", "liquid", u"");
    addPrototype();
    CoreBlock& block = place(u"x");
    set("x", block.getHandle());
    set("in", gp_handle(block.getGrLeftConnectionPort(0)));
    set("out", gp_handle(block.getGrRightConnectionPort(0)));
    set("s", diagram.root().addSubsystem(u"s").getHandle());
  }
  ~FunctionTable() override {
    base_workspace().clear();
    icon_styling_switch() = false;
  }
  static void set(const char* name, double value) { base_workspace().set(name, value); }
  static std::string value_of(const std::string& text) {
    const cvUniquePtr value = evaluate(text, Scope(base_workspace()));
    if (cvIsChar(value.get())) return kmf::cvarray_to_string(value.get());
    EXPECT_TRUE(cvIsLogical(value.get()) && cvGetNumberOfElements(value.get()) == 1) << text;
    return cvGetScalar(value.get()) != 0 ? "true" : "false";
  }
};

TEST_F(FunctionTable, HasItsMarksAndThreeFunctions) {
  const auto* words = reinterpret_cast<const std::uintptr_t*>(QueryCVFcnTable_kinemo_common_gl_gti_kernel());
  EXPECT_EQ(words[1], 0x3defa4fbU);
  EXPECT_EQ(words[2], 0x5a7a3667U);
  EXPECT_EQ(words[3], 3U);
  const auto* entries = reinterpret_cast<const cvEntryFunction*>(words[0]);
  for (int i = 0; i < 3; ++i) EXPECT_NE(entries[i], nullptr);
  EXPECT_EQ(entries[3], nullptr);
}

TEST_F(FunctionTable, SwitchIsReadAndSet) {
  EXPECT_EQ(value_of("gl.gti.iconStyling()"), "false");
  EXPECT_EQ(value_of("gl.gti.iconStyling(true)"), "true");
  EXPECT_EQ(value_of("gl.gti.iconStyling()"), "true");
  EXPECT_EQ(value_of("gl.gti.iconStyling()"), "true");
  EXPECT_TRUE(icon_styling_switch());
  const std::string group = "kinemo:scripting:runtime:";
  EXPECT_EQ(error_of([] { value_of("gl.gti.iconStyling(1)"); }), group + "NotLogicalScalar(double, 1)");
  EXPECT_EQ(error_of([] { value_of("gl.gti.iconStyling([true false])"); }), group + "NotLogicalScalar(logical, 2)");
  EXPECT_EQ(error_of([] { value_of("gl.gti.iconStyling(false, false)"); }), group + "TooManyInputs(2, 1)");
  EXPECT_TRUE(icon_styling_switch()) << "a refused input changes nothing";
  EXPECT_EQ(value_of("gl.gti.iconStyling(false)"), "false");
  EXPECT_FALSE(icon_styling_switch());
}

TEST_F(FunctionTable, LoggingIsAskedOfTheKindOfACoreBlock) {
  EXPECT_EQ(value_of("gl.gti.loggingSupported(x)"), "false");
  descriptor().loggingSupported(true);
  EXPECT_EQ(value_of("gl.gti.loggingSupported(x)"), "true");
  for (const char* other : {"s", "in", "-1", "1e300", "nan"}) {
    EXPECT_EQ(value_of("gl.gti.loggingSupported(" + std::string(other) + ")"), "false") << other;
  }
  EXPECT_EQ(error_of([] { value_of("gl.gti.loggingSupported()"); }), "kinemo:scripting:runtime:TooFewInputs(0, 1)");
  EXPECT_EQ(error_of([] { value_of("gl.gti.loggingSupported('x')"); }),
            "kinemo:scripting:runtime:NotDoubleScalar(char, 1)");
}

TEST_F(FunctionTable, PortsAreNamedByHandles) {
  EXPECT_EQ(value_of("gl.gti.portName(x, in)"), "in");
  EXPECT_EQ(value_of("gl.gti.portName(x, out)"), "out");
  EXPECT_EQ(value_of("gl.gti.portName(s, in)"), "");
  EXPECT_EQ(error_of([] { value_of("gl.gti.portName(x, 0.5)"); }),
            "kinemo:host:modules:UnknownPortHandle(gl.gti.portName)");
  EXPECT_EQ(error_of([] { value_of("gl.gti.portName(x)"); }), "kinemo:scripting:runtime:TooFewInputs(1, 2)");
}

/// As domains may raise; it can't be copied with its type.
struct ClientError : kmf::AttributedException {};

TEST_F(FunctionTable, ErrorsKeepTheirTypes) {
  const cvUniquePtr block(cvCreateDoubleScalar(cvGetScalar(base_workspace().get("x"))));
  cvArray_tag* input = block.get();
  cvArray_tag* output = nullptr;
  const cvEntryFunction entry = QueryCVFcnTable_kinemo_common_gl_gti_kernel()->entries[1];
  EXPECT_THROW(entry(1, &output, 0, nullptr), kmf::MessageException);
  behaviour->describe = [] { throw ClientError(); };
  EXPECT_THROW(entry(1, &output, 1, &input), ClientError);
  behaviour->describe = nullptr;
  EXPECT_EQ(output, nullptr);
}

TEST_F(FunctionTable, OtherTablesAreRefused) {
  const cvFunctionTable sound = *QueryCVFcnTable_kinemo_common_gl_gti_kernel();
  cvFunctionTable other = sound;
  other.secondMark = 1;
  const std::string error = "kinemo:host:modules:FunctionTableDoesNotFit";
  EXPECT_EQ(error_of([&] { embedded::registerKernelFunctions(&other); }), error + "(marks)");
  other = sound;
  other.version = 4;
  EXPECT_EQ(error_of([&] { embedded::registerKernelFunctions(&other); }), error + "(version 4)");
  const cvEntryFunction two[] = {sound.entries[0], sound.entries[1], nullptr};
  const cvEntryFunction four[] = {sound.entries[0], sound.entries[1], sound.entries[2], sound.entries[0], nullptr};
  other = {two, sound.firstMark, sound.secondMark, sound.version};
  EXPECT_EQ(error_of([&] { embedded::registerKernelFunctions(&other); }), error + "(2 functions)");
  other.entries = four;
  EXPECT_EQ(error_of([&] { embedded::registerKernelFunctions(&other); }), error + "(more functions)");
  other.entries = nullptr;
  EXPECT_EQ(error_of([&] { embedded::registerKernelFunctions(&other); }), error + "(no list of functions)");
  EXPECT_EQ(error_of([&] { embedded::registerKernelFunctions(nullptr); }), error + "(no table)");
}

TEST_F(FunctionTable, FunctionsHaveHelp) {
  for (const char* name : {"gl.gti.iconStyling", "gl.gti.loggingSupported", "gl.gti.portName", "kinemo.gl.gt.graph",
                           "kinemo.gl.gt.runtimeParameterInfo"}) {
    EXPECT_NE(embedded::scripting_runtime::find_help(name), nullptr) << name;
  }
  EXPECT_THAT(embedded::scripting_runtime::help_text("kinemo.gl.gt.graph"),
              testing::HasSubstr("\nReturns the graph constructed for the given"));
}

}  // namespace
}  // namespace gl::gti::test
