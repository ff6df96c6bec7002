#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/coreblock/host_flags.hpp"
#include "platform/block_diagram/dialog.hpp"
#include "platform/compile_layer/domain_manager.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"

#include <memory>

namespace gl::gti::test {

namespace {

using testing::ElementsAre;
using testing::Pair;

class CoreBlockLife : public CoreBlockTest {};

}  // namespace

TEST_F(CoreBlockLife, PrototypeTakesNameDescriptionAndParametersOfItsKind) {
  descriptor().blockText(u"Pump");
  descriptor().description(u"Moves liquid.");
  const CoreBlock& pump = addPrototype("pump");
  EXPECT_EQ(pump.getGrName(), u"Pump");
  EXPECT_EQ(gdi_block_desc(pump.getDialogInfo()), u"Moves liquid.");
  EXPECT_EQ(gdi_num_dialog_params(pump.getDialogInfo()), 1);
  EXPECT_EQ(behaviour->registrations, 1);
  EXPECT_STREQ(pump.getDomainName(), "test");
  EXPECT_TRUE(pump.isPhysicalNetworkBlock() && pump.alwaysTrue() && !pump.alwaysFalse());
  descriptor().blockText(u"");
  EXPECT_EQ(addPrototype("nameless").getGrName(), u"GL Core Block");
}

TEST_F(CoreBlockLife, PrototypeSetsTheHostsFlags) {
  using namespace host_flags;
  const GTBlock::Flags plain = addPrototype("plain").flags();
  EXPECT_EQ(plain.attributes & ATTRIBUTES, ATTRIBUTES);
  EXPECT_EQ(plain.block & (BLOCK_OWN_ICON | BLOCK_GENERATED_MASK), BLOCK_OWN_ICON);
  EXPECT_EQ(plain.block2 & (BLOCK2_SET | BLOCK2_CLEARED), BLOCK2_SET);
  EXPECT_EQ(plain.block3, 0u);
  descriptor().autogenMask(kmf::VnIdPath1("f"), "", false, false, false);
  CoreBlock& masked = addPrototype("masked");
  EXPECT_EQ(masked.flags().block & BLOCK_GENERATED_MASK, BLOCK_GENERATED_MASK);
  EXPECT_EQ(masked.flags().block3, BLOCK3_GENERATED_MASK);
  masked.markHostFlag();
  EXPECT_EQ(masked.flags().compile, COMPILE_MARK);
}

TEST_F(CoreBlockLife, PrototypeOfAnUnknownDomainLeavesAManagerInPlace) {
  DomainMgrPrototypeRegistry& registry = DomainMgrPrototypeRegistry::get();
  ASSERT_EQ(registry.getDefaultMgr("orphan"), nullptr);
  addPrototype("a", "orphan");
  DADomainObj* manager = registry.getDefaultMgr("orphan");
  ASSERT_NE(dynamic_cast<DADomainMgr*>(manager), nullptr);
  EXPECT_EQ(dynamic_cast<DADomainMgr*>(manager)->domainName(), "orphan");
  addPrototype("b", "orphan");
  EXPECT_EQ(registry.getDefaultMgr("orphan"), manager);
  const std::unique_ptr<DADomainMgr> copy(dynamic_cast<DADomainMgr*>(manager)->clone());
  DACompileResult result;
  copy->startCompile("m");
  copy->compile("m", result);
  EXPECT_EQ(copy->domainName(), "orphan");
  EXPECT_TRUE(result.values().empty());
  registry.removeDefaultMgr("orphan");
}

TEST_F(CoreBlockLife, CopyHasItsOwnInfo) {
  addPrototype();
  CoreBlock& first = place(u"x");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(check(first), "");
  const ustring after_first = descriptor().description();
  // The copy's object counts on from where the original's stood, and the original's doesn't see it.
  const std::unique_ptr<GTBlock> copy(first.clone());
  copy->checkDialogParameters(1);
  const ustring after_copy = descriptor().description();
  EXPECT_EQ(check(first), "");
  EXPECT_NE(after_copy, after_first);
  EXPECT_EQ(descriptor().description(), after_copy);
  EXPECT_STREQ(copy->getDomainName(), "test");
}

TEST_F(CoreBlockLife, ExecutionBlockIsTheHosts) {
  const std::unique_ptr<GTExecBlock> execution(addPrototype().createExecBlock());
  EXPECT_NE(execution, nullptr);
}

TEST_F(CoreBlockLife, EmbeddingGivesEachPortAnIdentifierOfItsOwn) {
  CoreBlock& block = addPrototype();
  behaviour->component = gl::core::Component(kmf::VnIdPath1("test.part"));
  BlockData data;
  for (const char16_t* name : {u"in", u"a b", u"a_b", u"1st"}) data.addPort(name);
  const ComponentEmbedding embedding = block.makeEmbedding(TranslationConfiguration(), data);
  EXPECT_EQ(embedding.component(), behaviour->component);
  const auto& ids = embedding.portEmbedding();
  ASSERT_EQ(ids.size(), 4u);
  EXPECT_EQ(ids.at(u"in"), kmf::VnId("in"));
  std::set<kmf::VnId> different;
  for (const auto& row : ids) different.insert(row.second);
  EXPECT_EQ(different.size(), 4u);
  EXPECT_EQ(ids.at(u"1st"), kmf::VnId::make("1st"));
}

TEST_F(CoreBlockLife, EmbeddingShortensLongPortNames) {
  CoreBlock& block = addPrototype();
  BlockData data;
  data.addPort(ustring(100, u'p') + u"1");
  data.addPort(ustring(100, u'p') + u"2");
  const ComponentEmbedding embedding = block.makeEmbedding(TranslationConfiguration(), data);
  std::set<kmf::VnId> different;
  for (const auto& row : embedding.portEmbedding()) {
    EXPECT_LE(row.second.size(), 64u);
    different.insert(row.second);
  }
  EXPECT_EQ(different.size(), 2u);
}

}  // namespace gl::gti::test
