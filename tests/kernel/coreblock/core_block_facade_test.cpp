#include "platform/block_diagram/mask.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"

#include <boost/make_shared.hpp>

namespace gl::gti::test {

namespace {

using kinemo::test::error_of;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class CoreBlockFacades : public CoreBlockTest {
 protected:
  void mask(GTBlock& block, const std::vector<GTMaskParameter>& parameters) {
    auto definition = boost::make_shared<GTMaskDefinition>();
    definition->parameters = parameters;
    MaskInterface::setMask(&block, definition);
  }
};

/// A client's list with defaults of its own.
class ClientParams final : public CommonBlockParams {
 public:
  void setDefaultParameterValue(CoreBlockFacade& block) override {
    seen.emplace_back(block.parameterValue(logSimulationData().get()));
  }
  std::vector<std::string> seen;
};

}  // namespace

TEST_F(CoreBlockFacades, AreFoundByHandleOfCoreBlocksOnly) {
  descriptor().addLeftPort("a", u"", "liquid", u"");
  addPrototype();
  CoreBlock& block = place(u"x");
  GTBlock& subsystem = diagram.root().addSubsystem(u"s");
  EXPECT_EQ(handle_to_core_block(block.getHandle()).handle(), block.getHandle());
  for (const double other :
       {-1.0, 1e300, subsystem.getHandle(), diagram.handle(), block.getGrLeftConnectionPort(0)->getHandle()}) {
    EXPECT_FALSE(is_handle_to_core_block(other)) << other;
  }
  EXPECT_EQ(error_of([] { handle_to_core_block(-1.5); }), "kinemo:common:gl:gti:core_block:HandleNotCoreBlock(-1.5)");
}

TEST_F(CoreBlockFacades, TellPortsByHandle) {
  descriptor().addRightPort("out", u"", "liquid", u"");
  addPrototype();
  CoreBlock& block = place(u"x");
  EXPECT_EQ(CoreBlockFacade(&block).portName(gp_handle(block.getGrRightConnectionPort(0))), "out");
}

TEST_F(CoreBlockFacades, ReadAndWriteDialogParameters) {
  addPrototype();
  CoreBlock& block = place(u"x");
  CoreBlockFacade facade(&block);
  const GTPrmDesc* logging = CommonBlockParams::get()->logSimulationData().get();
  facade.parameterValue(std::size_t(0), "first");
  EXPECT_STREQ(facade.parameterValue(logging), "first");
  facade.parameterValue(logging, "second");
  EXPECT_STREQ(facade.parameterValue(std::size_t(0)), "second");
  EXPECT_EQ(facade.evaluatedParamValue(logging)->text, "second");
  EXPECT_EQ(facade.evaluatedParamValue(std::size_t(0))->text, "second");
}

TEST_F(CoreBlockFacades, TellTheParametersOfTheNearestMaskOnly) {
  addPrototype();
  EXPECT_THAT(CoreBlockFacade(&place(u"bare")).maskParams(), IsEmpty());
  GTBlock& outer = diagram.root().addSubsystem(u"outer");
  mask(outer, {{"far", "", u"1", GTPrmDesc::STRING, "", {}}});
  GTBlock& inner = embedded::block_diagram::contents(outer)->addSubsystem(u"inner");
  mask(inner, {{"flag", "", u"on", GTPrmDesc::BOOLEAN, "", {}},
               {"dark", "", u"off", GTPrmDesc::BOOLEAN, "", {}},
               {"word", "", u"as typed", GTPrmDesc::STRING, "", {}},
               {"number", "", u"2*3", GTPrmDesc::EDIT, "", {}},
               {"list", "", u"a", GTPrmDesc::POPUP, "", {"a", "b"}}});
  auto& block = dynamic_cast<CoreBlock&>(embedded::block_diagram::contents(inner)->addBlock(u"x", "test/part"));
  EXPECT_THAT(CoreBlockFacade(&block).maskParams(),
              ElementsAre(Pair("dark", u"off"), Pair("flag", u"on"), Pair("list", u""), Pair("number", u""),
                          Pair("word", u"as typed")));
  mask(inner, {});
  EXPECT_THAT(CoreBlockFacade(&block).maskParams(), IsEmpty());
}

TEST_F(CoreBlockFacades, CommonParametersAreOneListWithTheLoggingSwitch) {
  CommonBlockParams* list = CommonBlockParams::get();
  EXPECT_EQ(CommonBlockParams::get(), list);
  ASSERT_EQ(list->getLength(), 1);
  EXPECT_EQ(list->getPrmDescs()[0]->getName(), "LogSimulationData");
  EXPECT_EQ(list->getPrmDescs()[0]->prompt(), "Block Logging:");
  EXPECT_EQ(list->getPrmDescs()[0]->type(), GTPrmDesc::BOOLEAN);
}

TEST_F(CoreBlockFacades, DefaultsOfAClientComeBehindTheCommonOnes) {
  CoreBlock& block = addPrototype();
  ClientParams list;
  CoreBlockFacade facade(&block);
  facade.registerParameters(&list);
  facade.parameterValue(std::size_t(0), "on");
  list.setDefaultParameterValues(facade);
  EXPECT_THAT(list.seen, ElementsAre("OFF"));
  EXPECT_STREQ(facade.parameterValue(list.logSimulationData().get()), "OFF");
  facade.registerParameters(CommonBlockParams::get());
}

}  // namespace gl::gti::test
