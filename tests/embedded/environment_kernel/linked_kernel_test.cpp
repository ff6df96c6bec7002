// An environment in a program that is linked with a kernel: here a table of this file, which may be a wrong one.

#include "embedded/environment/environment.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "platform/scripting_runtime/function_table.hpp"
#include "tests/support/errors.hpp"

#include <algorithm>

namespace {

using embedded::Environment;

void nothing(int, cvArray_tag**, int, cvArray_tag**) {}

constexpr cvEntryFunction entries[] = {nothing, nothing, nothing, nullptr};
constexpr cvFunctionTable sound{entries, 0x3defa4fb, 0x5a7a3667, 3};
const cvFunctionTable* offered = &sound;

/// How many of a function of the host, one of the kernel and a method of its package are known, with help or without.
std::ptrdiff_t known() {
  const auto is_known = [](const char* name) {
    namespace runtime = embedded::scripting_runtime;
    return runtime::find_function(name) != nullptr || runtime::find_help(name) != nullptr;
  };
  const auto names = {"get_param", "gl.gti.portName", "kinemo.gl.gt.graph"};
  return std::count_if(names.begin(), names.end(), is_known);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const cvFunctionTable* QueryCVFcnTable_kinemo_common_gl_gti_kernel() {
  return offered;
}

namespace {

TEST(LinkedKernel, FunctionsAndHelpAreThereAsLongAsTheEnvironment) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(known(), 0);
    const Environment environment;
    EXPECT_EQ(known(), 3);
  }
  EXPECT_EQ(known(), 0);
}

TEST(LinkedKernel, AnEnvironmentWhoseKernelDoesNotFitLeavesNothing) {
  const cvFunctionTable other{entries, 1, sound.secondMark, sound.version};
  for (const auto& [table, difference] : {std::pair(&other, "marks"), {nullptr, "no table"}}) {
    offered = table;
    EXPECT_EQ(kinemo::test::error_of([] { Environment environment; }),
              "kinemo:host:modules:FunctionTableDoesNotFit(" + std::string(difference) + ")");
    EXPECT_EQ(known(), 0);
  }
  offered = &sound;
  const Environment environment;
  EXPECT_EQ(known(), 3);
}

}  // namespace
