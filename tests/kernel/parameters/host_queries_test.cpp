#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"

#include "common/gl/gti/export/toplevel_runtime_parameters.hpp"
#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "common/gl/gti/src/kernel/block_model/property_reader.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

namespace gl::gti {
namespace {

using ::testing::ElementsAre;

class HostQueries : public kinemo::test::NetworkTest {
 protected:
  double handle(const char* block) const { return draw.at(block).getHandle(); }
};

TEST_F(HostQueries, OneHandleAndManyHaveOneShape) {
  draw.blocks("test/two", {"A", "B"});
  EXPECT_THAT(getParamStrings({handle("A")}, "Name"), ElementsAre("A"));
  EXPECT_THAT(getParamStrings({handle("B"), handle("A")}, "Name"), ElementsAre("B", "A"));
  EXPECT_THAT(getParamStrings({}, "Name"), ElementsAre());
  EXPECT_EQ(getParamUString(handle("A"), "Parent"), u"m");
  EXPECT_EQ(modelHandle("m"), diagram.handle());
  EXPECT_EQ(modelHandle(u"m/A"), handle("A"));
  EXPECT_NE(kinemo::test::error_of([] { modelHandle("nowhere"); }), "");
}

TEST_F(HostQueries, PathsDoubleTheSlashesOfNames) {
  GTBlock& block = diagram.root().addBlock(u"a/b//c", "test/two");
  const auto paths = blockPathsByHandle({block.getHandle(), block.getHandle()});
  ASSERT_EQ(paths.size(), 1u);
  EXPECT_EQ(paths.at(block.getHandle()), u"m/a//b////c");
}

TEST_F(HostQueries, PropertiesReadAsText) {
  draw.block("A", "test/masked");
  embedded::block_diagram::setProperty(draw.at("A"), "extra", u"\u00e4");
  const PropertyReader properties(handle("A"));
  EXPECT_EQ(properties.read("extra").value(), "\xc3\xa4");
  EXPECT_EQ(properties.read("R").value(), "2");
  EXPECT_FALSE(properties.read("absent"));
}

TEST_F(HostQueries, OpaqueSubsystemsAreKnownByTheirFlag) {
  draw.block("A");
  draw.subsystem("S");
  EXPECT_FALSE(isOpaqueSubsystem(handle("A")) || isOpaqueSubsystem(handle("S")));
  draw.set("S", "Opaque", u"on");
  EXPECT_TRUE(isOpaqueSubsystem(handle("S")));
}

/// Gives the answers of the two scripted functions; the environment's own come back with the next one.
void answer(cvArray_tag* resolved) {
  const std::shared_ptr<cvArray_tag> held(resolved, cvArrayDeleter());
  kmf::register_corvane_function("gl.gti.runtimeParameters", [](int, cvArray_tag** outputs, int nIn, cvArray_tag**) {
    EXPECT_EQ(nIn, 1);
    outputs[0] = cvCreateDoubleScalar(77);
  });
  kmf::register_corvane_function("gl.gti.resolveRuntimeParameters",
                                 [held](int, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
                                   EXPECT_EQ(nIn, 2);
                                   EXPECT_EQ(kmf::cvarray_to_string(inputs[0]), "m");
                                   EXPECT_EQ(cvGetScalar(inputs[1]), 77);
                                   outputs[0] = cvDuplicateArray(held.get());
                                 });
}

TEST_F(HostQueries, TopLevelParametersWithoutAValueAreLeftOutOrNamed) {
  cvArray_tag* resolved = cvCreateStructMatrix(1, 1, {"Map", "NonValue"});
  cvArray_tag* map = cvCreateStructMatrix(1, 2, {"Name", "Value"});
  cvSetField(map, 0, "Name", cvCreateString("text"));
  cvSetField(map, 0, "Value", cvCreateString("no number"));
  cvSetField(map, 1, "Name", cvCreateString("x"));
  cvSetField(map, 1, "Value", cvCreateDoubleScalar(4));
  cvSetField(resolved, 0, "Map", map);
  cvArray_tag* names = cvCreateCellMatrix(1, 2);
  cvSetCell(names, 0, cvCreateString("b"));
  cvSetCell(names, 1, cvCreateString("a"));
  cvSetField(resolved, 0, "NonValue", names);
  answer(resolved);
  const gl::core::RuntimeParameterInfo info = toplevel_runtime_parameters(u"m");
  EXPECT_THAT(info.runtimeParameters(), ElementsAre(kmf::VnId("x")));
  EXPECT_EQ(info.value("x").elements().at(0), 4);
  EXPECT_THAT(info.nonValueParameters(), ElementsAre(kmf::VnId("a"), kmf::VnId("b")));

  answer(cvCreateStructMatrix(1, 1, {"Other"}));
  EXPECT_EQ(toplevel_runtime_parameters(u"m"), gl::core::RuntimeParameterInfo());
  kmf::unregister_corvane_function("gl.gti.runtimeParameters");
  kmf::unregister_corvane_function("gl.gti.resolveRuntimeParameters");
  EXPECT_NE(kinemo::test::error_of([] { toplevel_runtime_parameters(u"m"); }), "") << "errors aren't hidden";
}

}  // namespace
}  // namespace gl::gti
