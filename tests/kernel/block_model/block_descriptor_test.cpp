#include "common/gl/gti/export/block_descriptor.hpp"

#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace gl::gti {

namespace {

using kinemo::test::error_of;
using testing::ElementsAre;

std::vector<std::string> ids(const std::vector<detail::PortInfo>& ports) {
  std::vector<std::string> texts;
  for (const detail::PortInfo& port : ports) texts.push_back(port.id());
  return texts;
}

}  // namespace

TEST(BlockDescriptor, BeginsWithTheStandingSwitchesAndNoPorts) {
  const BlockDescriptor fresh;
  EXPECT_FALSE(fresh.permuteImage() || fresh.loggingSupported());
  EXPECT_TRUE(fresh.rotateImage() && fresh.physicalPortRotation() && fresh.portConfigurationEnabled() &&
              fresh.enableFrame());
  EXPECT_FALSE(fresh.iconFile() || fresh.autogenMask());
  EXPECT_EQ(fresh.numLeftPorts() + fresh.numRightPorts(), 0u);
}

TEST(BlockDescriptor, RefusesAnIdentifierThatEitherSideHas) {
  BlockDescriptor block;
  block.addLeftPort("a", u"A", "liquid", u"");
  block.addRightPort("b", u"B", "gas", u"m");
  for (const auto add : {&BlockDescriptor::addLeftPort, &BlockDescriptor::addRightPort}) {
    EXPECT_EQ(error_of([&] { (block.*add)("a", u"", "gas", u""); }),
              "kinemo:common:gl:gti:core_block:PortAlreadyExists(a)");
  }
  EXPECT_EQ(block.numLeftPorts(), 1u);
  EXPECT_TRUE(block.leftPorts()[0] == detail::PortInfo("a", "liquid", u"A", u""));
  EXPECT_TRUE(block.rightPorts()[0] == detail::PortInfo("b", "gas", u"B", u"m"));
}

TEST(BlockDescriptor, ClearedPortsFreeTheirIdentifiers) {
  BlockDescriptor block;
  for (const char* id : {"a", "b"}) block.addLeftPort(id, u"", "liquid", u"");
  for (const char* id : {"d", "c"}) block.addRightPort(id, u"", "liquid", u"");
  block.clearLeftPorts();
  block.addRightPort("a", u"", "liquid", u"");
  EXPECT_THAT(ids(block.rightPorts()), ElementsAre("d", "c", "a"));
  block.clearRightPorts();
  for (const char* id : {"c", "b", "a"}) block.addLeftPort(id, u"", "liquid", u"");
  EXPECT_THAT(ids(block.leftPorts()), ElementsAre("c", "b", "a"));
}

TEST(BlockDescriptor, CopyStandsByItself) {
  BlockDescriptor first;
  first.addLeftPort("a", u"", "liquid", u"");
  BlockDescriptor second = first;
  second.addLeftPort("b", u"", "liquid", u"");
  second.autogenMask(kmf::VnIdPath1("a.b"), "text", true, false, true);
  EXPECT_EQ(first.numLeftPorts(), 1u);
  EXPECT_FALSE(first.autogenMask());
  EXPECT_EQ(error_of([&] { first.addLeftPort("b", u"", "liquid", u""); }), "");
}

TEST(BlockDescriptor, KeepsTheLastRequestForAMask) {
  BlockDescriptor block;
  block.autogenMask(kmf::VnIdPath1("first"), "1", true, true, true);
  block.autogenMask(kmf::VnIdPath1("a.b"), "2", false, true, false);
  ASSERT_TRUE(block.autogenMask());
  EXPECT_EQ(std::string(block.autogenMask()->function), "a.b");
  EXPECT_STREQ(block.autogenMask()->text, "2");
  EXPECT_TRUE(!block.autogenMask()->flag1 && block.autogenMask()->flag2 && !block.autogenMask()->flag3);
  block.clearAutogenMask();
  EXPECT_FALSE(block.autogenMask());
}

TEST(PortInfo, IsEqualInAllFourMembersOnly) {
  const detail::PortInfo port("a", "liquid", u"A", u"m");
  EXPECT_TRUE(port == detail::PortInfo("a", "liquid", u"A", u"m"));
  EXPECT_FALSE(port == detail::PortInfo("b", "liquid", u"A", u"m"));
  EXPECT_FALSE(port == detail::PortInfo("a", "gas", u"A", u"m"));
  EXPECT_FALSE(port == detail::PortInfo("a", "liquid", u"B", u"m"));
  EXPECT_FALSE(port == detail::PortInfo("a", "liquid", u"A", u"s"));
}

}  // namespace gl::gti
