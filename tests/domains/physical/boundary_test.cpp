#include "domains/physical/boundary.hpp"

#include "tests/domains/physical/physical_fixture.hpp"

namespace kinemo::physical::test {

namespace {

using testing::ElementsAre;

/// R1.n - Unit.in, and in Unit: in - R2.p, R2.n - R3.p.
class Boundary : public PhysicalTest {
 protected:
  Boundary() : unit(diagram->root().addSubsystem(u"Unit")) {
    bd::System& inside = *bd::contents(unit);
    GTBlock& in = inside.addPort(u"in", bd::Side::Left, 1);
    GTBlock& second = inside.addBlock(u"R2", "physical/resistor");
    GTBlock& third = inside.addBlock(u"R3", "physical/resistor");
    inside.addLine({bd::ports(in).at(0), second.getGrLeftConnectionPort(0)});
    inside.addLine({second.getGrRightConnectionPort(0), third.getGrLeftConnectionPort(0)});
    first = &place(u"R1", "physical/resistor");
  }
  void connect() { diagram->root().addLine({first->getGrRightConnectionPort(0), bd::subsystemPort(unit, u"in")}); }

  GTBlock& unit;
  GTBlock* first = nullptr;
};

}  // namespace

TEST_F(Boundary, NetworkThatCrossesAnAtomicSubsystemIsRefusedWithItsBlocks) {
  connect();
  bd::setParameter(unit, "TreatAsAtomicUnit", u"on");
  try {
    embedded::compile_layer::compile(*diagram);
    FAIL() << "no error";
  } catch (const kmf::Exception& error) {
    EXPECT_EQ(kinemo::test::describe(error),
              "kinemo:physical:compile:NetworkCrossesAtomicSubsystem('m/Unit/R2', 'm/Unit/R3', 2)");
    EXPECT_THAT(error.data().objects, ElementsAre("m/Unit/R2", "m/Unit/R3"));
  }
}

TEST_F(Boundary, VirtualSubsystemsAndNetworksWithinOneAreFine) {
  connect();
  EXPECT_THAT(errors(), ElementsAre());
}

TEST_F(Boundary, NetworkWithinAnAtomicSubsystemIsFine) {
  bd::setParameter(unit, "TreatAsAtomicUnit", u"on");
  EXPECT_THAT(errors(), ElementsAre());
}

TEST(RefuseCrossing, NamesTheFirstBlocksAndHoldsAllOfThem) {
  std::vector<gl::core::Component> components(7);
  for (std::size_t i = 0; i < components.size(); ++i)
    components[i].tag(gl::core::OBJECT(), ustring(u"m/") + static_cast<char16_t>(u'a' + i));
  try {
    refuse_crossing(components);
  } catch (const kmf::Exception& error) {
    EXPECT_THAT(error.data().arguments, ElementsAre("'m/a', 'm/b', 'm/c', 'm/d', 'm/e', ...", "7"));
    EXPECT_EQ(error.data().objects.size(), 7u);
  }
}

}  // namespace kinemo::physical::test
