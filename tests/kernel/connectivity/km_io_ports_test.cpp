#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"

#include "common/gl/gti/src/kernel/connectivity/port_disjoint_set.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "tests/kernel/support/host_calls.hpp"
#include "tests/kernel/support/test_domain.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <string>

namespace gl::gti {
namespace {

using embedded::block_diagram::Side;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class IoPorts : public kinemo::test::NetworkTest {
 protected:
  double handle(const std::string& block) const { return draw.at(block).getHandle(); }
  double port(const std::string& system, const std::string& text) const { return gp_handle(draw.portAt(system, text)); }
  const KmIoPortInfo& info(const std::string& subsystem) { return cache.get(handle(subsystem)); }
  /// Ports that an I/O port block reaches.
  const std::set<double>& reached(const std::string& subsystem, const std::string& name) {
    return info(subsystem).port(handle(subsystem + "/" + name)).connectedPorts();
  }

  KmIoPortCache cache;
};

TEST_F(IoPorts, StandForThePortsOfTheirSideInOrder) {
  draw.subsystem("S");
  draw.port("S/seven", Side::Left, 7);
  draw.port("S/three", Side::Left, 3);
  draw.port("S/one", Side::Right, 1);
  const PortHandles outer = readPortHandles(handle("S"));
  ASSERT_EQ(outer[0].size() + outer[1].size(), 3u);
  EXPECT_EQ(info("S").portId(outer[port_side::LEFT][0]), handle("S/three"));
  EXPECT_EQ(info("S").portId(outer[port_side::LEFT][1]), handle("S/seven"));
  EXPECT_EQ(info("S").portId(outer[port_side::RIGHT][0]), handle("S/one"));
  const IoPortEntry& seven = info("S").port(handle("S/seven"));
  EXPECT_EQ(seven.order(), 7) << "gaps close up in place, not in order";
  EXPECT_EQ(seven.path().string(), u"m/S/seven");
  EXPECT_EQ(seven.handle(), port("", "S.seven"));
  EXPECT_EQ(portsByName(handle("S")).at({port_side::LEFT, u"seven"}), seven.handle());
}

TEST_F(IoPorts, NamesWithSlashesStayOneComponent) {
  draw.subsystem("S");
  diagram.root().find(u"S");
  draw.system("S").addPort(u"a/b", Side::Left, 1);
  const double outer = readPortHandles(handle("S"))[port_side::LEFT].at(0);
  EXPECT_EQ(info("S").port(info("S").portId(outer)).path().back(), u"a//b");
}

TEST_F(IoPorts, AreWiresOnlyWhenNothingElseIsJoined) {
  draw.subsystem("S", {"a", "b", "c", "d", "e"}, {});
  draw.block("S/R");
  draw.wire("S", {"a", "b"});
  draw.wire("S", {"c", "d", "R.p"});
  EXPECT_THAT(reached("S", "a"), ElementsAre(port("S", "b")));
  EXPECT_THAT(reached("S", "c"), UnorderedElementsAre(port("S", "d"), port("S", "R.p")));
  EXPECT_TRUE(reached("S", "e").empty());
  for (const auto& [name, isWire] : {std::pair("a", true), {"b", true}, {"c", false}, {"d", false}, {"e", false}}) {
    EXPECT_EQ(info("S").isWireOnly(handle(std::string("S/") + name)), isWire) << name;
  }
  EXPECT_THAT(info("S").connectedTo(handle("S/c")), ElementsAre(handle("S/d")));
  EXPECT_THAT(info("S").idsOf(port("S", "R.p")), UnorderedElementsAre(handle("S/c"), handle("S/d")));
  EXPECT_TRUE(info("S").idsOf(-3).empty());
  EXPECT_TRUE(info("S").connectedTo(-3).empty());
}

TEST_F(IoPorts, NetsCrossNestedWiresWithoutLeavingThem) {
  // S:  in -- T[ U[ wire ] ] -- R.p
  draw.subsystem("S", {"in"}, {});
  draw.subsystem("S/T", {"l"}, {"r"});
  draw.subsystem("S/T/U", {"l"}, {"r"});
  draw.block("S/R");
  draw.wire("S", {"in", "T.l"});
  draw.wire("S", {"T.r", "R.p"});
  draw.wire("S/T", {"l", "U.l"});
  draw.wire("S/T", {"r", "U.r"});
  draw.wire("S/T/U", {"l", "r"});
  EXPECT_THAT(reached("S", "in"), ElementsAre(port("S", "R.p")));
  EXPECT_TRUE(info("S/T").isWireOnly(handle("S/T/l")));
}

TEST_F(IoPorts, PortsOfAChildThatLeadSomewhereStay) {
  draw.subsystem("S", {"in"}, {});
  draw.subsystem("S/T", {"l"}, {});
  draw.block("S/T/R");
  draw.wire("S", {"in", "T.l"});
  draw.wire("S/T", {"l", "R.p"});
  EXPECT_THAT(reached("S", "in"), ElementsAre(port("S", "T.l")));
}

TEST_F(IoPorts, VariantsMeetByNameAndSide) {
  draw.subsystem("V", {"same", "missing", "turned"}, {});
  draw.subsystem("V/choice", {"same"}, {"turned"});
  draw.subsystem("V/other", {"same", "missing", "turned"}, {});
  draw.block("V/choice/R");
  draw.wire("V/choice", {"same", "R.p"});
  draw.wire("V/choice", {"turned", "R.n"});
  draw.set("V", "Variant", u"on");
  draw.set("V", "ActiveVariant", u"choice");
  EXPECT_THAT(reached("V", "same"), ElementsAre(port("V", "choice.same")));
  EXPECT_TRUE(reached("V", "missing").empty());
  EXPECT_TRUE(reached("V", "turned").empty()) << "a choice's port on the other side is another one";
}

TEST_F(IoPorts, ChoiceMayJoinPortsThatItsFrameDoesNotHave) {
  draw.subsystem("V", {"a"}, {});
  draw.subsystem("V/choice", {"a", "b", "c"}, {});
  draw.wire("V/choice", {"a", "b", "c"});
  draw.set("V", "Variant", u"on");
  draw.set("V", "ActiveVariant", u"choice");
  EXPECT_TRUE(reached("V", "a").empty());
}

TEST_F(IoPorts, ReadsEachSubsystemOnceAndItsChildrenWhereTheirWiresAreCrossed) {
  draw.subsystem("S", {"a", "b"}, {});
  draw.subsystem("S/T", {"a", "b"}, {});
  draw.subsystem("S/U");
  const std::vector<std::string> toChildren{
      "find KMIOPort", "1 PortHandles",  "Parent",      "Name",      "Port",
      "Side",          "find SubSystem", "PortHandles", "1 Variant", "PortConnectivity"};
  kinemo::test::HostCalls calls;
  info("S/T");
  std::vector<std::string> expected = toChildren;
  expected.push_back("PortHandles");  // whose ports are the blocks' own
  EXPECT_EQ(calls.take(), expected);
  info("S/T");
  EXPECT_EQ(calls.take(), std::vector<std::string>());
  info("S");
  expected = toChildren;
  expected.insert(expected.end(), {"find KMIOPort", "PortHandles"});
  EXPECT_EQ(calls.take(), expected);
}

/// Runs something on a stack of 512 KB.
void onASmallStack(std::function<void()> work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
  pthread_t thread;
  const auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  EXPECT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

TEST_F(IoPorts, SystemsNestedDeeperThanTheStackAreCrossed) {
  using namespace embedded::block_diagram;
  System* system = &diagram.root();
  gtPort* outside = nullptr;
  for (int i = 0; i < 1500; ++i) {
    GTBlock& subsystem = system->addSubsystem(u"S");
    GTBlock& in = contents(subsystem)->addPort(u"i", Side::Left, 1);
    if (outside != nullptr) system->addLine({outside, ports(subsystem).front()});
    outside = ports(in).front();
    system = contents(subsystem);
  }
  system->addLine({outside, ports(system->addBlock(u"B", "test/two")).front()});
  onASmallStack([this] { EXPECT_THAT(reached("S", "i"), ElementsAre(port("S", "S.i"))); });
}

TEST_F(IoPorts, OrdersMayBeAnyNumber) {
  draw.subsystem("S", {"second", "first"}, {});
  kinemo::test::HostCalls calls;
  calls.answer("Port", {u"9223372036854775807", u"-9223372036854775808"});
  const auto byName = portsByName(handle("S"));
  const std::vector<double> left = readPortHandles(handle("S"))[port_side::LEFT];
  EXPECT_EQ(byName.at({port_side::LEFT, u"first"}), left.at(0));
  EXPECT_EQ(byName.at({port_side::LEFT, u"second"}), left.at(1));
  EXPECT_EQ(info("S").portId(left.at(0)), handle("S/first"));
}

TEST_F(IoPorts, BlocksThatStandForNoPortHaveNoRowByName) {
  draw.subsystem("S", {"a", "top", "surplus"}, {"r"});
  kinemo::test::HostCalls calls;
  calls.answer("Side", {u"left", u"top", u"left", u"right"});
  calls.answer("Port", {u"1", u"1", u"2", u"1"});
  cvArray_tag* outer = cvCreateStructMatrix(1, 1, {"LConn", "RConn"});
  cvSetField(outer, 0, "LConn", cvCreateDoubleScalar(70));
  cvSetField(outer, 0, "RConn", cvCreateDoubleScalar(80));
  calls.answer("PortHandles", outer);
  const auto byName = portsByName(handle("S"));
  EXPECT_EQ(byName.size(), 2u);
  EXPECT_EQ(byName.at({port_side::LEFT, u"a"}), 70);
  EXPECT_EQ(byName.at({port_side::RIGHT, u"r"}), 80);
}

TEST_F(IoPorts, SearchFindsDirectChildrenOnly) {
  draw.subsystem("S", {"in"}, {});
  draw.subsystem("S/T", {"in"}, {});
  draw.subsystem("S/T/U", {"in"}, {});
  EXPECT_THAT(findSystem(handle("S"), "SubSystem"), ElementsAre(handle("S/T")));
  EXPECT_THAT(findSystem(handle("S"), "KMIOPort"), ElementsAre(handle("S/in")));
  EXPECT_TRUE(findSystem(handle("S/T/U"), "SubSystem").empty());
}

TEST(PortDisjointSet, HandlesThatAreNoNumbersComeLastAndStayAlone) {
  PortDisjointSet nets;
  for (int i = 40; i > 0; --i) nets.makeSet(i % 3 == 0 ? std::nan("") : i);
  for (const std::vector<double>& listed : {nets.values(), nets.representatives()}) {
    ASSERT_EQ(listed.size(), 40u);
    EXPECT_TRUE(std::is_sorted(listed.begin(), listed.begin() + 27));
    EXPECT_TRUE(std::all_of(listed.begin() + 27, listed.end(), [](double value) { return std::isnan(value); }));
  }
}

}  // namespace
}  // namespace gl::gti
