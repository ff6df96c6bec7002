// The package "gt": its methods called as the runtime calls them, on a small network.

#include "common/gl/gti/src/kernel/scripting/gl_gt_package.hpp"
#include "common/gl/gti/src/kernel/scripting/graph_method.hpp"
#include "common/gl/gti/src/kernel/scripting/runtime_parameter_info_method.hpp"
#include "common/gl/gti/src/kernel/scripting/script_object.hpp"
#include "embedded/class_system/classes.hpp"
#include "embedded/class_system/packages.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/class_system/gl_package.hpp"
#include "platform/class_system/package_info.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>

namespace gl::gti {
namespace {

using embedded::scripting_runtime::base_workspace;
using embedded::scripting_runtime::evaluate;
using embedded::scripting_runtime::Scope;
using kinemo::test::error_of;
using testing::ElementsAre;

cvUniquePtr value_of(const std::string& text) {
  return evaluate(text, Scope(base_workspace()));
}

const gl::core::Graph& graph_in(const cvArray_tag* array) {
  const ccos::COSInterfacePtr object = omGetArrayElement(array, 0);
  return *static_cast<gl::core::Graph*>(object->getNativePointer("kinemo.gl.Graph"));
}

/// Two parts in a row, compiled by the domain "test". No object may be left at a test's end.
class ModelMethods : public kinemo::test::NetworkTest {
 protected:
  ModelMethods() : objects_before_(omLiveObjectCount()) {
    draw.blocks("test/two", {"A", "B"});
    draw.wire("", {"A.n", "B.p"});
    base_workspace().set("R0", 5.0);
    allow_kept_arrays(11);  // standing arguments of the search for blocks
  }
  ~ModelMethods() override {
    base_workspace().clear();
    EXPECT_EQ(omLiveObjectCount(), objects_before_) << "objects left alive";
  }

 private:
  std::size_t objects_before_;
};

TEST_F(ModelMethods, GiveObjectsOfTheGraphAndOfTheParameters) {
  intake();
  EXPECT_EQ(graph_in(value_of("kinemo.gl.gt.graph('test', 'm')").get()), graph());
  EXPECT_EQ(cvGetClassName(value_of("kinemo.gl.gt.runtimeParameterInfo('test', 'm')").get()),
            "kinemo.gl.RuntimeParameterInfo");
  EXPECT_THAT(kmf::cvarray_to_string_vector(value_of("kinemo.gl.gt.graph('test', 'm').components").get()),
              ElementsAre("A", "B"));
}

TEST_F(ModelMethods, EachCallGivesANewObjectWithACopyOfItsOwn) {
  intake();
  const cvUniquePtr first = value_of("kinemo.gl.gt.graph('test', 'm')");
  const cvUniquePtr second = value_of("kinemo.gl.gt.graph('test', 'm')");
  EXPECT_NE(omGetArrayElement(first.get(), 0), omGetArrayElement(second.get(), 0));
  auto* changed = const_cast<gl::core::Graph*>(&graph_in(first.get()));
  changed->insert(kmf::VnId("more"), gl::core::Node());
  EXPECT_NE(*changed, graph_in(second.get()));
  EXPECT_EQ(graph_in(second.get()), graph());
}

TEST_F(ModelMethods, SeeWhatWasRecordedLast) {
  intake();
  const cvUniquePtr before = value_of("kinemo.gl.gt.graph('test', 'm')");
  draw.blocks("test/one", {"C"});
  draw.wire("", {"B.n", "C.p"});
  intake();
  EXPECT_EQ(graph_in(before.get()).components().size(), 2U);
  EXPECT_EQ(graph_in(value_of("kinemo.gl.gt.graph('test', 'm')").get()).components().size(), 3U);
}

TEST_F(ModelMethods, UnknownDomainsAreToldWhetherOrNotTheModelExists) {
  intake();
  for (const char* method : {"graph", "runtimeParameterInfo"}) {
    const std::string call = "kinemo.gl.gt." + std::string(method);
    for (const char* model : {"m", "nowhere"}) {
      EXPECT_EQ(error_of([&] { value_of(call + "('other', '" + model + "')"); }),
                "kinemo:common:gl:gti:cos:UnknownDomain(other)");
    }
    EXPECT_EQ(error_of([&] { value_of(call + "('test', 'nowhere')"); }),
              "kinemo:common:gl:gti:compile:UnknownModelForDomain(nowhere, test)");
  }
}

TEST_F(ModelMethods, InputsAreTwoTexts) {
  const std::string classes = "kinemo:scripting:classes:";
  EXPECT_EQ(error_of([] { value_of("kinemo.gl.gt.graph('test')"); }),
            classes + "TooFewInputs(kinemo.gl.gt.graph, 1, 2)");
  EXPECT_EQ(error_of([] { value_of("kinemo.gl.gt.graph('test', 'm', 1)"); }),
            classes + "TooManyInputs(kinemo.gl.gt.graph, 3, 2)");
  EXPECT_EQ(error_of([] { value_of("kinemo.gl.gt.graph(1, 'm')"); }), "kinemo:scripting:array:NotText(double)");
  EXPECT_EQ(error_of([] { value_of("kinemo.gl.gt.graph('test', {})"); }), "kinemo:scripting:array:NotText(cell)");
}

TEST_F(ModelMethods, FailedCompilesLeaveNoObjects) {
  intake();
  kinemo::test::TestDomain::onComponent() = [](const ustring&, const BlockData&) {
    throw std::runtime_error("no component");
  };
  EXPECT_THROW(value_of("kinemo.gl.gt.graph('test', 'm')"), std::runtime_error);
  kinemo::test::TestDomain::onComponent() = nullptr;
}

TEST_F(ModelMethods, StandInThePackageBelowTheGraphCores) {
  EXPECT_EQ(gl::cvi::gl_package()->getPath(), "kinemo.gl");
  EXPECT_THAT(embedded::scripting_runtime::package_contents("kinemo.gl.gt"),
              ElementsAre("graph", "runtimeParameterInfo"));
  EXPECT_EQ(embedded::class_system::find_package("gt"), nullptr);
  EXPECT_EQ(embedded::class_system::find_package("kinemo.gl.gt")->getPath(), "kinemo.gl.gt");
}

TEST_F(ModelMethods, TellTheirSignaturesAndTexts) {
  for (const char* name : {"graph", "runtimeParameterInfo"}) {
    const auto method = embedded::class_system::find_package("kinemo.gl.gt")->method(name);
    ASSERT_NE(dynamic_cast<const kmf::ccos::MethodInfo*>(method.get()), nullptr);
    EXPECT_STREQ(method->getName(), name);
    const ccos::COSMethodSignature& signature = *method->getMethodSignature();
    ASSERT_EQ(signature.leastInputs(), 2U);
    ASSERT_EQ(signature.numInputs(), 2U);
    ASSERT_EQ(signature.numOutputs(), 1U);
    EXPECT_FALSE(signature.takesFurtherInputs());
    EXPECT_TRUE(signature.inputType(0) == "any" && signature.inputType(1) == "any" && signature.outputType(0) == "any");
  }
  EXPECT_STREQ(GraphMethod().getDetailedDescription(),
               "Returns the graph constructed for the given Physical Domain and Gantrel model during the last "
               "compilation of the Gantrel model.");
  EXPECT_STREQ(
      RuntimeParameterInfoMethod().getDetailedDescription(),
      "Returns the RuntimeParameterInfo constructed for the given Physical Domain and Gantrel model during the "
      "last compilation of the Gantrel model.");
}

}  // namespace
}  // namespace gl::gti
