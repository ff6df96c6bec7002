#include "common/gl/gti/src/kernel/translation/atomic_units.hpp"

#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace gl::gti {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A -- S[ B -- T[ C ] ]: one net, or S and T by themselves where their ports aren't joined.
class AtomicBoundary : public kinemo::test::NetworkTest {
 protected:
  AtomicBoundary() {
    draw.block("A");
    draw.subsystem("S", {"in"}, {});
    draw.block("S/B");
    draw.subsystem("S/T", {"in"}, {});
    draw.block("S/T/C");
    draw.wire("S", {"T.in", "B.n"});
    draw.wire("S/T", {"in", "C.p"});
    configuration.nonVirtualBoundaryFcn([this](const std::vector<gl::core::Component>& components) {
      ++calls;
      for (const gl::core::Component& component : components) offenders.push_back(gl::core::object(component));
    });
  }
  void joinTop() {
    draw.wire("", {"A.n", "S.in"});
    draw.wire("S", {"in", "B.p"});
  }
  std::vector<ustring> compile() {
    calls = 0;
    offenders.clear();
    intake();
    graph();
    return offenders;
  }

  int calls = 0;
  std::vector<ustring> offenders;
};

TEST_F(AtomicBoundary, VirtualSubsystemsAreNoBoundary) {
  joinTop();
  EXPECT_THAT(compile(), IsEmpty());
  EXPECT_EQ(calls, 0);
}

TEST_F(AtomicBoundary, NetworkAcrossAUnitIsToldWithoutTheModelsOwnBlocks) {
  joinTop();
  draw.set("S", "TreatAsAtomicUnit", u"On");
  EXPECT_THAT(compile(), ElementsAre(u"m/S/B", u"m/S/T/C"));
  EXPECT_EQ(calls, 1);
}

TEST_F(AtomicBoundary, NetworkInsideOneUnitIsFine) {
  draw.set("S", "TreatAsAtomicUnit", u"on");
  EXPECT_THAT(compile(), IsEmpty());
}

TEST_F(AtomicBoundary, InnerUnitIsTheUnitOfItsBlocks) {
  draw.set("S", "TreatAsAtomicUnit", u"on");
  draw.set("S/T", "TreatAsAtomicUnit", u"on");
  EXPECT_THAT(compile(), ElementsAre(u"m/S/B", u"m/S/T/C"));
}

TEST_F(AtomicBoundary, ErrorOfTheDomainEndsTheCompile) {
  joinTop();
  draw.set("S/T", "TreatAsAtomicUnit", u"on");
  configuration.nonVirtualBoundaryFcn(
      [](const std::vector<gl::core::Component>&) { kmf::throw_message("kinemo:test", "Refused"); });
  intake();
  EXPECT_EQ(kinemo::test::error_of([&] { graph(); }), "kinemo:test:Refused()");
}

TEST_F(AtomicBoundary, HostIsAskedOnlyWhereAFunctionIsSet) {
  joinTop();
  const TranslationConfiguration none;
  gl::core::Graph graph;
  graph.insert("S", gl::core::Component(gl::core::Graph(), {}));
  checkNonVirtualBoundaries(graph, none);
  AtomicUnits units = readAtomicUnits(graph);
  EXPECT_EQ(units.isAtomic.size(), 1u) << "a subgraph without a block is never asked about";
  EXPECT_TRUE(atomicUnit(units, "S").empty());
  units.isAtomic["S.T"] = true;
  EXPECT_EQ(atomicUnit(units, "S.T.x"), kmf::VnIdPath("S.T"));
  EXPECT_EQ(atomicUnit(units, "S.T"), kmf::VnIdPath("S.T"));
}

}  // namespace
}  // namespace gl::gti
