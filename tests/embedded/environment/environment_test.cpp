#include "embedded/environment/environment.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/class_system/classes.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/block_diagram/events.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using embedded::Environment;
using embedded::block_diagram::Diagram;

enum Variant { good = 0, other_interface = 1, failing = 2, none = 3, other_kernel = 4 };

std::string module(Variant variant) {
  return MODULE_FOLDER "/libenvironment_module_" + std::to_string(variant) + MODULE_SUFFIX;
}

/// Id and arguments of what `action` raises, the second argument left out: it is the system's own text.
template <class Action>
std::string errorOf(Action action) {
  try {
    action();
  } catch (const kmf::Exception& error) {
    const kmf::ErrorData data = error.data();
    return data.id + (data.arguments.empty() ? "" : "(" + data.arguments.front() + ")");
  }
  return {};
}

TEST(EnvironmentTest, AModuleBringsItsBlocksAndTakesThemWithIt) {
  {
    Environment environment;
    EXPECT_EQ(environment.loadDomain(module(good)), "module_test");
    EXPECT_EQ(environment.domains(), std::vector<std::string>{"module_test"});
    EXPECT_NE(gt_find_prototype("module_test/part"), nullptr);
  }
  EXPECT_EQ(gt_find_prototype("module_test/part"), nullptr);
  Environment again;
  EXPECT_EQ(again.loadDomain(module(good)), "module_test");
}

/// This program has no kernel of its own.
TEST(EnvironmentTest, ADomainBringsTheKernelsFunctionsAndPackages) {
  const auto is_known = [](const char* name) { return embedded::scripting_runtime::find_function(name) != nullptr; };
  for (int round = 0; round < 2; ++round) {
    Environment environment;
    EXPECT_FALSE(is_known("gl.gti.portName"));
    environment.loadDomain(PHYSICAL_MODULE);
    EXPECT_TRUE(is_known("gl.gti.portName"));
    EXPECT_TRUE(is_known("kinemo.gl.gt.graph"));
  }
  EXPECT_FALSE(is_known("gl.gti.portName"));
  EXPECT_TRUE(is_known("kinemo.gl.gt.graph")) << "packages stay, and so does the library that has their code";
}

TEST(EnvironmentTest, FilesThatAreNoModuleAreToldApart) {
  Environment environment;
  EXPECT_EQ(errorOf([&] { environment.loadDomain("/nowhere/x.so"); }), "CannotOpenModule(/nowhere/x.so)");
  EXPECT_EQ(errorOf([&] { environment.loadDomain(""); }), "CannotOpenModule()");
  EXPECT_EQ(errorOf([&] { environment.loadDomain(__FILE__); }), "CannotOpenModule(" __FILE__ ")");
  EXPECT_EQ(errorOf([&] { environment.loadDomain(module(none)); }), "NotADomainModule(" + module(none) + ")");
  EXPECT_EQ(errorOf([&] { environment.loadDomain(module(other_interface)); }),
            "ModuleDoesNotFit(" + module(other_interface) + ")");
  EXPECT_TRUE(environment.domains().empty());
}

TEST(EnvironmentTest, AModuleThatFailsToLoadLeavesNothing) {
  Environment environment;
  for (const auto& [variant, error] :
       {std::pair(failing, "LoadFailed"), {other_kernel, "FunctionTableDoesNotFit(version 2)"}}) {
    EXPECT_EQ(errorOf([variant = variant, &environment] { environment.loadDomain(module(variant)); }), error);
    EXPECT_EQ(gt_find_prototype("module_test/part"), nullptr);
    EXPECT_TRUE(environment.domains().empty());
  }
  EXPECT_EQ(environment.loadDomain(module(good)), "module_test");
}

TEST(EnvironmentTest, AModuleIsLoadedOnce) {
  Environment environment;
  environment.loadDomain(module(good));
  EXPECT_EQ(environment.loadDomain(module(good)), "module_test");
  EXPECT_EQ(environment.domains().size(), 1u);
  const kinemo::test::TemporaryFolder folder;
  const std::filesystem::path copy = folder.path() / "copy.so";
  std::filesystem::copy_file(module(good), copy);
  EXPECT_EQ(errorOf([&] { environment.loadDomain(copy.string()); }), "DomainAlreadyLoaded(module_test)");
  EXPECT_NE(gt_find_prototype("module_test/part"), nullptr) << "the first one stays";
}

TEST(EnvironmentTest, ThereIsOneAtATime) {
  Environment environment;
  EXPECT_EQ(errorOf([] { Environment second; }), "EnvironmentInUse");
}

/// Counts diagrams that close.
struct Closing : GtBdDomainListener {
  Closing() { GtBdDomainEventHandler::registerListener(this); }
  ~Closing() override { GtBdDomainEventHandler::deregisterListener(this); }
  void handleBlockDiagramEvent(GTBlockDiagram*) override { ++count; }
  int count = 0;
};

TEST(EnvironmentTest, ItsEndClosesDiagramsAndReleasesAllArrays) {
  const std::size_t before = cvLiveArrayCount();
  Closing closing;
  {
    Environment environment;
    environment.loadDomain(module(good));
    embedded::scripting_runtime::base_workspace().set("k", 2.0);
    for (const char* name : {"a", "b"}) {
      Diagram& diagram = Diagram::create(name);
      diagram.setVariable("R0", u"[1 2 3]*k", "Ohm", true);
      GTBlock& block = diagram.root().addBlock(u"P", "module_test/part");
      embedded::block_diagram::setParameter(block, "R", u"R0");
      embedded::compile_layer::evaluateParameters(diagram);
      EXPECT_GT(cvLiveArrayCount(), before);
    }
  }
  EXPECT_EQ(closing.count, 2);
  EXPECT_TRUE(Diagram::open().empty());
  EXPECT_EQ(cvLiveArrayCount(), before);
}

TEST(EnvironmentTest, GraphsOfScriptsMayOutliveIt) {
  const std::size_t before = omLiveObjectCount();
  cvUniquePtr kept;
  {
    Environment environment;
    environment.loadDomain(PHYSICAL_MODULE);
    Diagram& diagram = Diagram::create("m");
    diagram.root().addBlock(u"R", "physical/resistor");
    embedded::compile_layer::compile(diagram);
    namespace runtime = embedded::scripting_runtime;
    const auto graph = [] {
      return runtime::evaluate("kinemo.gl.gt.graph('physical', 'm')", runtime::Scope(runtime::base_workspace()));
    };
    runtime::base_workspace().set("g", graph());
    kept = graph();
    EXPECT_EQ(omLiveObjectCount(), before + 2);
  }
  EXPECT_EQ(omLiveObjectCount(), before + 1) << "the one of the workspace is gone";
  const cvUniquePtr copy(cvCreateSharedCopy(kept.get()));
  kept.reset();
  EXPECT_EQ(cvGetClassName(copy.get()), "kinemo.gl.Graph");
}

TEST(EnvironmentTest, TheWorkspaceEndsBeforeTheModules) {
  static int ended = 0;
  auto definition = embedded::class_system::class_around<int>("test.Ending");
  definition.destroy = [](void* native) {
    EXPECT_NE(gt_find_prototype("module_test/part"), nullptr) << "what a module made may need its code";
    ++ended;
    delete static_cast<int*>(native);
  };
  embedded::class_system::add_class(std::move(definition));
  {
    Environment environment;
    environment.loadDomain(module(good));
    embedded::scripting_runtime::base_workspace().set(
        "x", embedded::class_system::array_of(embedded::class_system::object_around("test.Ending", 1)));
  }
  EXPECT_EQ(ended, 1);
}

TEST(EnvironmentTest, TheHostsFunctionsAreThereAsLongAsTheEnvironment) {
  const auto call = [] {
    const cvUniquePtr name(cvCreateString("nobody"));
    cvArray_tag* inputs[] = {name.get(), name.get()};
    cvArray_tag* output = nullptr;
    kmf::call_internal_corvane(1, &output, 2, inputs, "get_param");
  };
  {
    Environment environment;
    EXPECT_EQ(errorOf(call), "UnknownObject(nobody)");
  }
  EXPECT_EQ(errorOf(call), "UndefinedFunction(get_param)");
}

}  // namespace
