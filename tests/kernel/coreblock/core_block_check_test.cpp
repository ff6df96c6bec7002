#include "platform/foundation/exception.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"

namespace gl::gti::test {

namespace {

using testing::ElementsAre;

constexpr char failed[] = "kinemo:common:gl:gti:core_block:ParameterCheckFailed(m/x)";

class CoreBlockCheck : public CoreBlockTest {
 protected:
  /// The error of a check, which must come.
  kmf::ErrorData errorOf(CoreBlock& block) {
    try {
      block.checkDialogParameters(1);
    } catch (const kmf::Exception& error) {
      return error.data();
    }
    ADD_FAILURE() << "no error";
    return {};
  }
};

}  // namespace

TEST_F(CoreBlockCheck, FailureNamesTheBlockAndKeepsItsCause) {
  addPrototype();
  CoreBlock& block = place(u"x");
  behaviour->check = [](CoreBlockFacade&) { kmf::throw_message("kinemo:test", "BadValue", "7"); };
  const kmf::ErrorData error = errorOf(block);
  EXPECT_EQ(error.id, "ParameterCheckFailed");
  EXPECT_THAT(error.arguments, ElementsAre("m/x"));
  EXPECT_THAT(error.objects, ElementsAre("m/x"));
  ASSERT_EQ(error.causes.size(), 1u);
  EXPECT_EQ(error.causes[0].id, "BadValue");
}

TEST_F(CoreBlockCheck, FailureStillAppliesTheDescriptor) {
  addPrototype();
  CoreBlock& block = place(u"x");
  behaviour->check = [this](CoreBlockFacade&) {
    descriptor().addLeftPort("late", u"", "liquid", u"");
    descriptor().physicalPortRotation(false);
    kmf::throw_message("kinemo:test", "BadValue");
  };
  EXPECT_EQ(check(block), failed);
  EXPECT_EQ(block.getGrNumLeftConnectionPorts(), 1);
  EXPECT_FALSE(block.usesPhysicalPortRotation());
}

TEST_F(CoreBlockCheck, OtherErrorsPassStraightThrough) {
  addPrototype();
  CoreBlock& block = place(u"x");
  behaviour->check = [](CoreBlockFacade&) { throw std::runtime_error("fault"); };
  EXPECT_THROW(block.checkDialogParameters(1), std::runtime_error);
}

TEST_F(CoreBlockCheck, RefusesLoggingWhereTheKindDoesNotSupportIt) {
  addPrototype();
  CoreBlock& block = place(u"x");
  const GTPrmDesc* logging = CommonBlockParams::get()->logSimulationData().get();
  for (const char* text : {"off", "OFF", "On", ""}) {
    block.setGrPrmValue(logging, text);
    EXPECT_EQ(check(block), "") << text;
  }
  block.setGrPrmValue(logging, "on");
  const kmf::ErrorData error = errorOf(block);
  EXPECT_EQ(error.id, "ParameterCheckFailed");
  ASSERT_EQ(error.causes.size(), 1u);
  EXPECT_EQ(error.causes[0].id, "LoggingNotSupported");
  EXPECT_THAT(error.causes[0].arguments, ElementsAre("m/x"));
  descriptor().loggingSupported(true);
  EXPECT_EQ(check(block), "");
}

TEST_F(CoreBlockCheck, GeneratesTheMaskOnEditsOnly) {
  descriptor().autogenMask(kmf::VnIdPath1("test.generate"), "text of the mask", true, false, true);
  addPrototype();
  CoreBlock& block = place(u"x");
  context.calls.clear();
  EXPECT_EQ(check(block, 1), "");
  EXPECT_THAT(context.calls, ElementsAre());
  EXPECT_EQ(check(block, 0), "");
  EXPECT_THAT(context.calls, ElementsAre("test.generate 1 3"));
  EXPECT_STREQ(block.getGeneratedMaskText(), "text of the mask");
  block.updateGeneratedMask();
  EXPECT_EQ(context.calls.size(), 2u);
  block.refreshGeneratedMask("reason", false);
  descriptor().clearAutogenMask();
  block.refreshGeneratedMask("reason", true);
  EXPECT_EQ(context.calls.size(), 2u);
  EXPECT_EQ(block.getGeneratedMaskText(), nullptr);
}

TEST_F(CoreBlockCheck, RequestAfterThePrototypeWasMadeGeneratesNoMask) {
  addPrototype();
  CoreBlock& block = place(u"x");
  descriptor().autogenMask(kmf::VnIdPath1("test.generate"), "", false, false, false);
  EXPECT_EQ(check(block, 0), "");
  block.updateGeneratedMask();
  EXPECT_THAT(context.calls, ElementsAre());
}

TEST_F(CoreBlockCheck, ArraysOfTheGeneratorEndWithItsCall) {
  descriptor().autogenMask(kmf::VnIdPath1("test.generate"), "", false, false, false);
  addPrototype();
  CoreBlock& block = place(u"x");
  const int scope = cvOpenScope();
  block.updateGeneratedMask();
  EXPECT_EQ(context.scopes.back(), scope);
  cvCloseScope(scope);
  block.updateGeneratedMask();
  EXPECT_EQ(context.scopes.back(), 0);
  context.fail = true;
  EXPECT_THROW(block.updateGeneratedMask(), std::runtime_error);
}

TEST_F(CoreBlockCheck, DiagnosticOfTheGeneratorIsRaised) {
  descriptor().autogenMask(kmf::VnIdPath1("test.generate"), "", false, false, false);
  addPrototype();
  CoreBlock& block = place(u"x");
  context.refuse = true;
  EXPECT_THAT(check(block, 0), testing::StartsWith("kinemo:test:Refused(m/x"));
}

}  // namespace gl::gti::test
