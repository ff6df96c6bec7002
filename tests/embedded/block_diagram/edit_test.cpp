// Edits: blocks and lines that end, parameters that are set all or not at all.

#include "embedded/block_diagram/edit.hpp"

#include "host_fixture.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace host_tests {
namespace {

///     A.r --+-- S.in     S: in ---- R.l
///           +-- B.l
///     A.l ---- B.r       (a stub "ground" ends at B.r, too)
class EditTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    diagram = &newDiagram();
    System& root = diagram->root();
    a = &root.addBlock(u"A", "test/two");
    b = &root.addBlock(u"B", "test/two");
    s = &root.addSubsystem(u"S");
    in = &contents(*s)->addPort(u"in", Side::Left, 1);
    r = &contents(*s)->addBlock(u"R", "test/two");
    contents(*s)->addLine({right(*in), left(*r)});
    root.addLine({right(*a), subsystemPort(*s, u"in"), left(*b)});
    root.addLine({left(*a), right(*b)});
    root.addLine({right(*b)}, u"ground");
  }

  static bool joined(const gtPort* x, const gtPort* y) {
    const std::vector<gtPort*>& net = netOf(*x);
    return std::find(net.begin(), net.end(), y) != net.end();
  }

  Diagram* diagram;
  GTBlock *a, *b, *s, *in, *r;
};

TEST_F(EditTest, BlockLeavesItsLinesAndThoseThatJoinNothingEnd) {
  ASSERT_TRUE(joined(right(*a), left(*b)));
  const double handle = a->getHandle();
  removeBlock(*a);
  EXPECT_EQ(nullptr, Handle2GantrelObject(handle));
  EXPECT_EQ(nullptr, diagram->root().find(u"A"));
  EXPECT_EQ(4U, diagram->blockCount());
  EXPECT_TRUE(joined(subsystemPort(*s, u"in"), left(*b)));
  EXPECT_EQ(2U, diagram->root().lines().size()) << "the line to A.l joins nothing any more, the stub names a net";
  ASSERT_EQ(1U, linesAt(*right(*b)).size());
  EXPECT_EQ(u"ground", linesAt(*right(*b)).front()->name);
  diagram->root().addBlock(u"A", "test/two");
}

TEST_F(EditTest, SubsystemEndsWithAllThatLiesInIt) {
  const double inner = r->getHandle();
  System* system = contents(*s);
  for (int level = 0; level < 2000; ++level) system = contents(system->addSubsystem(u"s"));
  EXPECT_EQ(2005U, diagram->blockCount());
  removeBlock(*s);
  EXPECT_EQ(2U, diagram->blockCount());
  EXPECT_EQ(nullptr, Handle2GantrelObject(inner));
  EXPECT_TRUE(diagram->root().subsystems().empty());
  EXPECT_TRUE(joined(right(*a), left(*b)));
}

TEST_F(EditTest, IoPortTakesItsPortOnTheSubsystemAlong) {
  contents(*s)->addPort(u"second", Side::Left, 2);
  removeBlock(*in);
  ASSERT_EQ(1, s->getGrNumLeftConnectionPorts());
  EXPECT_EQ(subsystemPort(*s, u"second"), s->getGrLeftConnectionPort(0));
  EXPECT_TRUE(contents(*s)->lines().empty());
  EXPECT_EQ(1U, contents(*s)->ioPorts().size());
  EXPECT_TRUE(joined(right(*a), left(*b)));
}

TEST_F(EditTest, LineEndsAtAllItsPorts) {
  removeLine(diagram->root(), *linesAt(*right(*b)).front());
  EXPECT_FALSE(joined(left(*a), right(*b)));
  ASSERT_EQ(1U, linesAt(*right(*b)).size());
  renameLine(diagram->root(), *linesAt(*right(*b)).front(), u"");
  EXPECT_TRUE(linesAt(*right(*b)).empty()) << "a stub without a name is no line";
  EXPECT_EQ(1U, diagram->root().lines().size());
}

TEST_F(EditTest, ParametersAreSetAllOrNotAtAll) {
  const auto set = [](GTBlock& block, const ParameterTexts& texts) {
    return errorOf([&] { setParameters(block, texts); });
  };
  GTBlock& masked = diagram->root().addBlock(u"M", "test/masked");
  const ustring before = parameter(masked, "R");
  EXPECT_EQ("kinemo:host:diagram:UnknownParameter(r2, model/M, )", set(masked, {{"R", u"7"}, {"r2", u"1"}}));
  EXPECT_EQ(before, parameter(masked, "R"));
  EXPECT_EQ("", set(masked, {{"R", u"7"}}));
  EXPECT_EQ(u"7", parameter(masked, "R"));
  EXPECT_NE("", set(*in, {{"Side", u"right"}, {"Port", u"x"}}));
  EXPECT_TRUE(joined(right(*a), subsystemPort(*s, u"in"))) << "the port has kept its side, and so its lines";
  EXPECT_EQ("test:CheckFailed(model/M)", set(masked, {{"R", u"8"}, {"label", u"fails"}}));
  EXPECT_EQ(u"7", parameter(masked, "R"));
  EXPECT_EQ(u"", parameter(masked, "label"));
}

/// Takes any label.
class EasyBlock : public TestBlock {
 public:
  EasyBlock() : TestBlock("test", 1, 1) {}
  GTBlock* clone() const override { return new EasyBlock(*this); }
  void checkDialogParameters(int) override {}
};

TEST_F(EditTest, SetParamOfManyObjectsChangesNoneWhenOneRefuses) {
  GTBlock& masked = diagram->root().addBlock(u"M", "test/masked");
  const auto set = [&](const char* name, const char* value, std::vector<double> handles) {
    cvUniquePtr objects(cvCreateDoubleMatrix(1, handles.size(), handles.data()));
    std::vector<cvUniquePtr> inputs;
    inputs.push_back(std::move(objects));
    inputs.push_back(host_tests::text(name));
    inputs.push_back(host_tests::text(value));
    return errorOf([&] { call("set_param", std::move(inputs)); });
  };
  const ustring before = parameter(masked, "R");
  EXPECT_NE("", set("R", "9", {masked.getHandle(), a->getHandle()}));
  EXPECT_EQ(before, parameter(masked, "R"));
  auto* easy = new EasyBlock;
  MaskInterface::setMask(easy, MaskInterface::mask(&masked));
  gt_register_prototype("test/easy", easy);
  GTBlock& other = diagram->root().addBlock(u"N", "test/easy");
  EXPECT_NE("", set("label", "fails", {other.getHandle(), masked.getHandle()}));
  EXPECT_EQ(u"", parameter(other, "label")) << "set before the other refused";
}

}  // namespace
}  // namespace host_tests
