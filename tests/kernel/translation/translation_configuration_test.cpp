#include "common/gl/gti/export/translation_configuration.hpp"

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/export/gt_parameter_evaluator.hpp"
#include "tests/support/errors.hpp"

#include <gtest/gtest.h>

namespace gl::gti {
namespace {

using gl::core::ConnectorSpec;
using kinemo::test::error_of;

const BlockFactory anyFactory = [](const BlockData&) { return ComponentEmbedding(gl::core::Component()); };

TEST(TranslationConfiguration, StartsWithUsableDefaults) {
  const TranslationConfiguration fresh;
  EXPECT_FALSE(fresh.hasFactory(BlockType::OPAQUE) || fresh.hasFactory(BlockType::CORE));
  EXPECT_FALSE(fresh.hasNonVirtualBoundaryFcn());
  EXPECT_TRUE(fresh.reserved().empty() && fresh.blockParameters().empty() && fresh.modelParameters().empty());
  EXPECT_FALSE(fresh.propagateRuntimeParametersFcn()());
  const ConnectorSpec a("a", "x"), b("b", "x");
  const ConnectorPrecedenceFcn& precedes = fresh.connectorPrecedenceFcn();
  EXPECT_TRUE(precedes("z", a, "a", b));
  EXPECT_FALSE(precedes("a", b, "z", a));
  EXPECT_FALSE(precedes("a", a, "b", a));
}

TEST(TranslationConfiguration, TellsWhichFactoryIsMissing) {
  TranslationConfiguration configuration;
  configuration.factory(BlockType::OPAQUE, anyFactory);
  const TranslationConfiguration& read = configuration;
  EXPECT_FALSE(read.factory(BlockType::OPAQUE).empty());
  EXPECT_EQ(error_of([&] { read.factory(BlockType::CORE); }),
            "kinemo:common:gl:gti:translation_configuration:UnsetFactory(core)");
}

TEST(TranslationConfiguration, BoundaryFunctionCanBeTakenBack) {
  TranslationConfiguration configuration;
  configuration.nonVirtualBoundaryFcn([](const std::vector<gl::core::Component>&) {});
  EXPECT_TRUE(configuration.hasNonVirtualBoundaryFcn());
  configuration.nonVirtualBoundaryFcn(NonVirtualBoundaryFcn());
  EXPECT_FALSE(configuration.hasNonVirtualBoundaryFcn());
  const TranslationConfiguration& read = configuration;
  EXPECT_EQ(error_of([&] { read.nonVirtualBoundaryFcn(); }),
            "kinemo:common:gl:gti:translation_configuration:UnsetNonVirtualBoundaryFcn()");
}

TEST(TranslationConfiguration, CopiesShareUntilOneChanges) {
  TranslationConfiguration a;
  a.addReserved("x");
  TranslationConfiguration b = a;
  EXPECT_EQ(&a.reserved(), &b.reserved());
  b.addReserved("y");
  b.addReserved("y");
  EXPECT_EQ(a.reserved().size(), 1u);
  EXPECT_EQ(b.reserved().size(), 2u);
  swap(a, b);
  EXPECT_EQ(b.reserved().size(), 1u);
}

TEST(TranslationConfiguration, LastModelParameterOfAnIdCounts) {
  TranslationConfiguration configuration;
  configuration.addModelParameter("x", ustring(u"a"), false);
  configuration.addModelParameter("x", ustring(u"b"), true);
  ASSERT_EQ(configuration.modelParameters().size(), 1u);
  const auto& [value, conversion] = configuration.modelParameters().at("x");
  EXPECT_EQ(boost::get<ustring>(value), u"b");
  EXPECT_TRUE(boost::get<bool>(conversion));
}

}  // namespace
}  // namespace gl::gti
