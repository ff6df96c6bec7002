// Copies of blocks in the host.

#include "embedded/block_diagram/copy_block.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "host_fixture.hpp"

namespace host_tests {
namespace {

///     in ---- M.l   M.r ---- out (a line "end", and a stub at M.r)    of equal order: second, first
class CopyBlock : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    diagram = &newDiagram();
    s = &diagram->root().addSubsystem(u"S");
    inside = contents(*s);
    in = &inside->addPort(u"in", Side::Left, 1);
    inside->addPort(u"first", Side::Right, 2);
    inside->addPort(u"second", Side::Right, 2);
    setParameter(*inside->find(u"first"), "Port", u"2");
    GTBlock& out = inside->addPort(u"out", Side::Right, 1);
    m = &inside->addBlock(u"M", "test/masked");
    setParameter(*m, "R", u"7");
    setProperty(*m, "Position", u"[1 2 3 4]");
    inside->addLine({right(*in), left(*m)});
    inside->addLine({right(*m), right(out)}, u"end");
    inside->addLine({right(*m)}, u"stub");
    diagram->root().addLine({subsystemPort(*s, u"in"), subsystemPort(*s, u"out")});
  }

  static std::vector<ustring> sideNames(const GTBlock& subsystem) {
    std::vector<ustring> names;
    for (const gtPort* port : ports(subsystem)) names.push_back(ioPortOf(*port)->getGrName());
    return names;
  }

  Diagram* diagram;
  System* inside;
  GTBlock *s, *in, *m;
};

TEST_F(CopyBlock, HasAllThatLiesInsideAndNoLinesAtItsPorts) {
  setParameter(*s, "Opaque", u"on");
  Diagram& other = newDiagram("other");
  GTBlock& copy = copyBlock(*s, other.root(), u"T");
  const System& own = *contents(copy);
  EXPECT_EQ(6U, other.blockCount());
  EXPECT_EQ((std::vector<ustring>{u"in", u"out", u"second", u"first"}), sideNames(copy));
  EXPECT_EQ(sideNames(*s), sideNames(copy)) << "of equal order, who moved last stands last";
  EXPECT_EQ(u"on", parameter(copy, "Opaque"));
  EXPECT_TRUE(other.root().lines().empty());
  auto* masked = dynamic_cast<TestBlock*>(own.find(u"M"));
  ASSERT_NE(nullptr, masked) << "the block's class cloned it";
  EXPECT_EQ(1, masked->checks - dynamic_cast<TestBlock*>(m)->checks) << "and it checked itself";
  EXPECT_EQ(u"7", parameter(*masked, "R"));
  EXPECT_EQ(u"[1 2 3 4]", masked->host().extras->properties.at("Position"));
  setParameter(*masked, "R", u"8");
  EXPECT_EQ(u"7", parameter(*m, "R"));
  ASSERT_EQ(3U, own.lines().size());
  EXPECT_EQ(u"end", own.lines()[1]->name);
  EXPECT_EQ((std::vector<gtPort*>{right(*own.find(u"in")), left(*masked)}), own.lines()[0]->ports);
  EXPECT_EQ((std::vector<gtPort*>{right(*masked)}), own.lines()[2]->ports);
}

TEST_F(CopyBlock, MayStandInWhatItIsTheCopyOf) {
  copyBlock(*s, *inside, u"S");
  EXPECT_EQ(12U, diagram->blockCount());
  copyBlock(*s, *contents(*inside->find(u"S")), u"S");
  EXPECT_EQ(24U, diagram->blockCount()) << "eleven, and the copy itself";
  EXPECT_NE(nullptr, diagram->findBlock(u"S/S/S/S/M"));
  EXPECT_EQ(nullptr, diagram->findBlock(u"S/S/S/S/S"));
}

TEST_F(CopyBlock, NothingIsLeftOfOneThatFails) {
  setParameter(*m, "label", u"fails");
  EXPECT_EQ("test:CheckFailed(model/T/M)", errorOf([&] { copyBlock(*s, diagram->root(), u"T"); }));
  EXPECT_EQ("kinemo:host:diagram:DuplicateBlock(S, model)", errorOf([&] { copyBlock(*s, diagram->root(), u"S"); }));
  EXPECT_EQ("kinemo:host:diagram:EmptyBlockName(model)", errorOf([&] { copyBlock(*s, diagram->root(), u""); }));
  EXPECT_EQ("kinemo:host:diagram:PortAtTop(in)", errorOf([&] { copyBlock(*in, diagram->root(), u"in"); }));
  EXPECT_EQ(6U, diagram->blockCount());
  EXPECT_EQ(1U, diagram->root().blocks().size());
}

}  // namespace
}  // namespace host_tests
