#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"

namespace gl::gti::test {

namespace {

using embedded::block_diagram::linesAt;
using embedded::block_diagram::ports;
using testing::ElementsAre;

/// Ports a and b on the left, c on the right.
class CoreBlockPorts : public CoreBlockTest {
 protected:
  CoreBlockPorts() {
    descriptor().addLeftPort("a", u"A", "liquid", u"");
    descriptor().addLeftPort("b", u"B", "gas", u"bar");
    descriptor().addRightPort("c", u"C", "liquid", u"m");
    addPrototype();
  }

  std::vector<double> handles(const CoreBlock& block) {
    std::vector<double> all;
    for (const gtPort* port : ports(block)) all.push_back(port->getHandle());
    return all;
  }
  std::vector<std::string> names(CoreBlock& block) {
    std::vector<std::string> all;
    for (const double handle : handles(block)) all.push_back(block.portName(handle));
    return all;
  }
  std::vector<std::string> types(const CoreBlock& block) {
    std::vector<std::string> all;
    for (const gtPort* port : ports(block)) all.push_back(gtGetPortDomainPortType(port));
    return all;
  }
};

}  // namespace

TEST_F(CoreBlockPorts, FollowTheDescriptorInOrderAndType) {
  CoreBlock& block = place(u"x");
  EXPECT_EQ(block.getGrNumLeftConnectionPorts(), 2);
  EXPECT_THAT(types(block), ElementsAre("test.liquid", "test.gas", "test.liquid"));
  EXPECT_THAT(names(block), ElementsAre("a", "b", "c"));
  EXPECT_EQ(block.getGrLeftPortUnit(1), u"bar");
  EXPECT_EQ(block.getGrRightPortUnit(0), u"m");
}

TEST_F(CoreBlockPorts, OfAnUnchangedBlockStayWithTheirLines) {
  CoreBlock& x = place(u"x");
  CoreBlock& y = place(u"y");
  diagram.root().addLine({x.getGrLeftConnectionPort(0), y.getGrRightConnectionPort(0)});
  const std::vector<double> before = handles(x);
  // A type set behind the block's back shows whether the ports are touched.
  ASSERT_EQ(gtSetPortDomainPortType(x.getGrLeftConnectionPort(1), "other.type"), nullptr);
  EXPECT_EQ(check(x), "");
  EXPECT_EQ(handles(x), before);
  EXPECT_EQ(gtGetPortDomainPortType(x.getGrLeftConnectionPort(1)), "other.type");
  EXPECT_EQ(linesAt(*x.getGrLeftConnectionPort(0)).size(), 1u);
}

TEST_F(CoreBlockPorts, AreAllAppliedAgainWhenOneLabelChanges) {
  CoreBlock& block = place(u"x");
  ASSERT_EQ(gtSetPortDomainPortType(block.getGrLeftConnectionPort(1), "other.type"), nullptr);
  descriptor().clearRightPorts();
  descriptor().addRightPort("c", u"Other label", "liquid", u"m");
  EXPECT_EQ(check(block), "");
  EXPECT_THAT(types(block), ElementsAre("test.liquid", "test.gas", "test.liquid"));
}

TEST_F(CoreBlockPorts, ComeBackWhenTheHostHasChangedTheirNumber) {
  CoreBlock& block = place(u"x");
  block.setGrNumRightConnectionPorts(0, nullptr);
  EXPECT_EQ(check(block), "");
  EXPECT_THAT(names(block), ElementsAre("a", "b", "c"));
}

TEST_F(CoreBlockPorts, MoveFromSideToSideWithTheDescriptor) {
  CoreBlock& block = place(u"x");
  EXPECT_THAT(names(block), ElementsAre("a", "b", "c"));
  descriptor().clearLeftPorts();
  descriptor().addRightPort("a", u"A", "gas", u"");
  EXPECT_EQ(check(block), "");
  EXPECT_EQ(block.getGrNumLeftConnectionPorts(), 0);
  EXPECT_THAT(names(block), ElementsAre("c", "a"));
  EXPECT_EQ(block.getGrLeftPortUnit(0), u"");
}

TEST_F(CoreBlockPorts, StayAsTheyAreWhileTheConfigurationIsOff) {
  CoreBlock& block = place(u"x");
  descriptor().portConfigurationEnabled(false);
  descriptor().clearLeftPorts();
  EXPECT_EQ(check(block), "");
  EXPECT_THAT(names(block), ElementsAre("a", "b", "c"));
  // Fewer ports in the host than were configured: those that are left still have their names.
  block.setGrNumLeftConnectionPorts(1, nullptr);
  EXPECT_EQ(check(block), "");
  EXPECT_THAT(names(block), ElementsAre("a", "c"));
}

TEST_F(CoreBlockPorts, OfAnIllegalTypeRaiseTheHostsDiagnosticAndKeepTheOthers) {
  CoreBlock& block = place(u"x");
  descriptor().clearRightPorts();
  descriptor().addRightPort("c", u"", "not a type", u"");
  descriptor().addRightPort("d", u"", "liquid", u"");
  EXPECT_THROW(block.checkDialogParameters(1), kmf::MessageException);
  EXPECT_EQ(gtGetPortDomainPortType(block.getGrLeftConnectionPort(0)), "test.liquid");
  EXPECT_EQ(gtGetPortDomainPortType(block.getGrRightConnectionPort(1)), "");
}

TEST_F(CoreBlockPorts, UnknownHandleIsRefused) {
  CoreBlock& block = place(u"x");
  EXPECT_THROW(block.portName(-1.0), std::out_of_range);
}

TEST_F(CoreBlockPorts, IdentifiersMakeARowOfTexts) {
  kmf::CvCleaner cleaner;
  EXPECT_EQ(CoreBlock::portIdCell({}, cleaner), nullptr);
  const cvArray_tag* cell = CoreBlock::portIdCell(descriptor().leftPorts(), cleaner);
  EXPECT_THAT(cvGetDimensions(cell), ElementsAre(1, 2));
  EXPECT_THAT(kmf::cvarray_to_string_vector(cell), ElementsAre("a", "b"));
}

}  // namespace gl::gti::test
