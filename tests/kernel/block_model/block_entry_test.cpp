#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"

#include "common/gl/gti/export/block_path.hpp"
#include "common/gl/gti/src/kernel/block_model/hierarchical_entry.hpp"
#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace gl::gti {
namespace {

using kinemo::test::error_of;
using kinemo::test::Listing;
using ::testing::ElementsAre;

/// A.n, B.p and the opaque S.in are one net; M is a masked block beside them.
class Entries : public kinemo::test::NetworkTest {
 protected:
  Entries() {
    draw.blocks("test/two", {"A", "B"});
    draw.block("M", "test/masked");
    draw.subsystem("S", {"in"}, {"out"});
    draw.wire("", {"A.n", "B.p", "S.in"});
  }
  boost::shared_ptr<BlockEntryData> leaf(const char* block) {
    ModelConnectivity connectivity(embedded::network_data::MachineData(diagram, "test", Listing::AllPairs).get());
    return makeBlockEntry(ioPorts, draw.at(block).getHandle(), connectivity);
  }
  double port(const char* text) const { return gp_handle(draw.portAt("", text)); }

  KmIoPortCache ioPorts;
};

TEST_F(Entries, LeafKnowsPathPortsAndFarPorts) {
  draw.set("S", "Opaque", u"on");
  const auto core = leaf("A");
  EXPECT_EQ(core->path(), u"m/A");
  EXPECT_EQ(core->handles(), std::set<double>{draw.at("A").getHandle()});
  ASSERT_EQ(core->ports().size(), 1u) << "ports that are joined to nothing are no rows";
  const auto& [handle, record] = *core->ports().begin();
  EXPECT_EQ(handle, port("A.n"));
  EXPECT_EQ(record.name(), u"n");
  EXPECT_EQ(record.connected(), (std::set<double>{port("B.p"), port("S.in")}));

  const auto opaque = leaf("S");
  ASSERT_EQ(opaque->ports().size(), 1u);
  EXPECT_EQ(opaque->ports().begin()->second.name(), u"in") << "named after the I/O port block";
  EXPECT_TRUE(leaf("M")->ports().empty());
}

TEST_F(Entries, PrintForPeople) {
  std::ostringstream out;
  out << *leaf("A");
  std::ostringstream expected;
  expected << "m/A\n ports:\n  n\n   " << port("B.p") << "\n";
  EXPECT_EQ(out.str(), expected.str());
}

TEST_F(Entries, OnlyDialogParametersKeepTheirTexts) {
  draw.set("M", "R", u"1+1");
  embedded::compile_layer::evaluateParameters(diagram);
  const auto entry = leaf("M");
  const auto& parameters = entry->data().parameters();
  EXPECT_EQ(parameters.at("R").expression(), u"1+1");
  EXPECT_EQ(cvGetScalar(parameters.at("R").value()), 2);
  EXPECT_EQ(cvGetCharacters(parameters.at("R_unit").value()), u"Ohm");
}

TEST_F(Entries, SubstitutionLeavesOtherHoldersAlone) {
  boost::shared_ptr<BlockEntryData> entry = leaf("A");
  const boost::shared_ptr<BlockEntryData> held = entry;
  applySubstitutions(entry, {{port("B.p"), 5000}});
  EXPECT_NE(entry, held);
  EXPECT_EQ(held->ports().begin()->second.connected().count(5000), 0u);
  EXPECT_EQ(entry->ports().begin()->second.connected().count(5000), 1u);
  const BlockEntryData* own = entry.get();
  applySubstitutions(entry, {{5000, 6000}});
  EXPECT_EQ(entry.get(), own) << "the only owner writes in place";
  EXPECT_EQ(entry->ports().begin()->second.connected().count(6000), 1u);
}

/// A subsystem's graph with the one node N.
gl::core::Graph oneNode() {
  gl::core::Component inner;
  inner.addConnector("p", "test.line");
  gl::core::Graph graph;
  graph.insert("C", inner);
  graph.insert("N", gl::core::Node());
  graph.insert("N", gl::core::ConnectorSpec("C", "p"), "");
  return graph;
}

TEST_F(Entries, SubsystemExportsWhatItExposes) {
  draw.block("S/C");
  draw.wire("S", {"in", "C.p"});
  const double inner = gp_handle(draw.portAt("S", "C.p"));
  const auto entry = makeHierarchicalEntry(ioPorts, BlockPath(u"m/S"), oneNode(),
                                           {{"N", {{inner}, {port("A.n"), port("B.p")}}}}, configuration);
  ASSERT_EQ(entry->ports().size(), 1u);
  EXPECT_EQ(entry->ports().begin()->first, port("S.in"));
  EXPECT_EQ(entry->ports().begin()->second.connected(), (std::set<double>{port("A.n"), port("B.p")}));
  const ComponentEmbedding embedding = entry->embedding(configuration);
  EXPECT_THAT(embedding.portEmbedding(), ElementsAre(std::pair(ustring(u"in"), kmf::VnId("in"))));
  EXPECT_EQ(embedding.component().mapExported("N"), kmf::VnId("in"));
  EXPECT_TRUE(makeHierarchicalEntry(ioPorts, BlockPath(u"m/S"), oneNode(), {}, configuration)->ports().empty());
}

TEST_F(Entries, NodeThatNoPortStandsForIsAnError) {
  for (const std::set<double>& inner : {std::set<double>{}, std::set<double>{-5}}) {
    EXPECT_EQ(error_of([&] {
                makeHierarchicalEntry(ioPorts, BlockPath(u"m/S"), oneNode(), {{"N", {inner, {1}}}}, configuration);
              }),
              "kinemo:common:gl:gti:compile:UnknownBoundaryPort(N, m/S)");
  }
}

}  // namespace
}  // namespace gl::gti
