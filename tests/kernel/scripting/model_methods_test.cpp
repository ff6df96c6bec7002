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

template <class T>
T& native_in(const cvArray_tag* array, const char* class_name) {
  return *static_cast<T*>(omGetArrayElement(array, 0)->getNativePointer(class_name));
}

gl::core::Graph& graph_in(const cvArray_tag* array) {
  return native_in<gl::core::Graph>(array, "kinemo.gl.Graph");
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
  graph_in(first.get()).insert(kmf::VnId("more"), gl::core::Node());
  EXPECT_NE(graph_in(first.get()), graph_in(second.get()));
  EXPECT_EQ(graph_in(second.get()), graph());
}

TEST_F(ModelMethods, SoDoCallsForRunTimeParameters) {
  diagram.setVariable("R1", u"1000", "Ohm", true);
  intake();
  const cvUniquePtr first = value_of("kinemo.gl.gt.runtimeParameterInfo('test', 'm')");
  const cvUniquePtr second = value_of("kinemo.gl.gt.runtimeParameterInfo('test', 'm')");
  const auto info_in = [](const cvUniquePtr& array) -> gl::core::RuntimeParameterInfo& {
    return native_in<gl::core::RuntimeParameterInfo>(array.get(), "kinemo.gl.RuntimeParameterInfo");
  };
  info_in(first).addNonValueParameter("more");
  EXPECT_NE(info_in(first), info_in(second));
  EXPECT_EQ(info_in(second), manager().model(key(), "m").runtimeParameters());
  EXPECT_THAT(info_in(second).runtimeParameters(), ElementsAre(kmf::VnId("R1")));
}

TEST_F(ModelMethods, TellThatTheyWroteOneOutput) {
  intake();
  const cvUniquePtr test(cvCreateString("test"));
  const cvUniquePtr m(cvCreateString("m"));
  const cvUniquePtr nowhere(cvCreateString("nowhere"));
  const GraphMethod graph_method;
  const RuntimeParameterInfoMethod info_method;
  for (const ccos::COSMethodInfo* method :
       std::initializer_list<const ccos::COSMethodInfo*>{&graph_method, &info_method}) {
    for (const int wanted : {0, 1, 5}) {
      int nOut = wanted;
      ccos::COSValue outputs[5] = {};
      const ccos::COSValue wrong[] = {test.get(), nowhere.get()};
      EXPECT_THROW(method->invoke(nullptr, nOut, outputs, 2, wrong), kmf::MessageException);
      EXPECT_THAT(outputs, testing::Each(nullptr)) << "an error leaves the outputs";
      const ccos::COSValue inputs[] = {test.get(), m.get()};
      method->invoke(nullptr, nOut, outputs, 2, inputs);
      const cvUniquePtr output(outputs[0]);
      EXPECT_EQ(nOut, 1) << wanted;
      EXPECT_TRUE(omIsCCOSArray(output.get()) && outputs[1] == nullptr);
    }
  }
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

TEST_F(ModelMethods, TakeTwoTextsAndGiveOneObject) {
  intake();
  const std::string classes = "kinemo:scripting:classes:";
  const std::string not_text = "kinemo:scripting:array:NotText";
  for (const std::string method : {"kinemo.gl.gt.graph", "kinemo.gl.gt.runtimeParameterInfo"}) {
    const auto error = [&](const char* inputs, int wanted = 1) {
      return error_of(
          [&] { embedded::scripting_runtime::evaluate_outputs(method + inputs, Scope(base_workspace()), wanted); });
    };
    EXPECT_EQ(error("()"), classes + "TooFewInputs(" + method + ", 0, 2)");
    EXPECT_EQ(error("('test')"), classes + "TooFewInputs(" + method + ", 1, 2)");
    EXPECT_EQ(error("('test', 'm', 1)"), classes + "TooManyInputs(" + method + ", 3, 2)");
    EXPECT_EQ(error("(1, 'm')"), not_text + "(double)");
    EXPECT_EQ(error("('test', {})"), not_text + "(cell)");
    EXPECT_EQ(error("('other', {})"), not_text + "(cell)") << "both are read before the domain is looked up";
    EXPECT_EQ(error("('test', 'm')", 2), "kinemo:scripting:runtime:TooManyOutputs(" + method + ", 2)");
  }
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
