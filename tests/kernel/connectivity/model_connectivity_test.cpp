#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"

#include "common/gl/gti/src/kernel/connectivity/port_disjoint_set.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace gl::gti {
namespace {

using kinemo::test::Listing;
using ::testing::ElementsAre;

class Connectivity : public kinemo::test::NetworkTest {
 protected:
  ModelConnectivity fromMachine(Listing listing = Listing::Spanning) const {
    return ModelConnectivity(embedded::network_data::MachineData(diagram, "test", listing).get());
  }
  double handle(const char* block) const { return draw.at(block).getHandle(); }
  double port(const char* text) const { return gp_handle(draw.portAt("", text)); }

  /// All records as (source, destination), whatever their order.
  static std::set<std::pair<double, double>> pairs(ModelConnectivity& connectivity) {
    std::set<std::pair<double, double>> found;
    for (const double block : connectivity.blockHandles()) {
      for (const BlockConnection& record : connectivity.connections(block)) {
        EXPECT_EQ(record.source.blockHandle, block);
        found.emplace(record.source.portHandle, record.destination.portHandle);
      }
    }
    return found;
  }
};

TEST_F(Connectivity, BothDoorsTellTheSameNetwork) {
  draw.blocks("test/two", {"A", "B", "C", "Alone"});
  draw.wire("", {"A.n", "B.p", "C.p"});
  draw.wire("", {"C.n", "A.p"});
  ModelConnectivity machine = fromMachine(Listing::AllPairs);
  const embedded::network_data::PortLists lists = embedded::network_data::portLists(diagram, "test");
  ModelConnectivity ports("m", lists.nets, lists.blocks);
  EXPECT_EQ(machine.modelName(), "m");
  EXPECT_EQ(machine.blockHandles(), ports.blockHandles());
  EXPECT_EQ(machine.blockName(handle("Alone")), ports.blockName(handle("Alone")));
  EXPECT_EQ(pairs(machine), pairs(ports));
  EXPECT_EQ(pairs(machine).size(), 3u * 2u + 2u);
  EXPECT_TRUE(machine.connections(handle("Alone")).empty());

  const BlockConnection& record = machine.connections(handle("C")).back();
  EXPECT_EQ(record.source.side, port_side::RIGHT);
  EXPECT_EQ(record.destination.side, port_side::LEFT);
  EXPECT_EQ(record.destination.blockHandle, handle("A"));
}

TEST_F(Connectivity, ListsOfPortsKeepTheirOrderAndTheirLoneMembers) {
  draw.blocks("test/two", {"A", "B"});
  gtPort* ap = draw.portAt("", "A.p");
  gtPort* an = draw.portAt("", "A.n");
  gtPort* bp = draw.portAt("", "B.p");
  ModelConnectivity connectivity("m", {{{an, ap}, {bp}}}, {&draw.at("A")});
  EXPECT_EQ(connectivity.blockHandles().size(), 2u) << "a net of one port lists its block";
  EXPECT_TRUE(connectivity.connections(handle("B")).empty());
  const auto& records = connectivity.connections(handle("A"));
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].source.portHandle, gp_handle(an));
  EXPECT_EQ(records[1].source.portHandle, gp_handle(ap));
  EXPECT_EQ(records[1].source.side, port_side::LEFT);
  EXPECT_EQ(records[0].source.side, port_side::RIGHT);
  EXPECT_EQ(connectivity.blockName(handle("A")), u"m/A");
}

TEST_F(Connectivity, FarPortsThatNobodyOwnsAreOutOfRange) {
  draw.block("A");
  ModelConnectivity connectivity = fromMachine();
  EXPECT_THROW(connectivity.connections(-7), std::out_of_range);
  try {
    connectivity.connections(-7);
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "invalid unordered_map<K, T> key");
  }
}

TEST(PortDisjointSet, SmallestHandleStandsForANetInEveryOrder) {
  std::vector<std::pair<double, double>> merges{{5, 4}, {4, 9}, {2, 9}, {7, 8}, {8, 8}, {1, 7}};
  std::mt19937 random(3);
  for (int run = 0; run < 50; ++run) {
    std::shuffle(merges.begin(), merges.end(), random);
    PortDisjointSet nets;
    for (const double value : {9, 1, 8, 2, 7, 4, 5, 3, 3}) nets.makeSet(value);
    for (const auto& [a, b] : merges) random() % 2 != 0 ? nets.unite(a, b) : nets.unite(b, a);
    EXPECT_THAT(nets.representatives(), ElementsAre(1, 2, 3));
    EXPECT_EQ(nets.find(9), 2);
    EXPECT_EQ(nets.find(8), 1);
    EXPECT_THAT(nets.values(), ElementsAre(1, 2, 3, 4, 5, 7, 8, 9));
  }
}

TEST(PortDisjointSet, UnknownHandlesHaveNoNet) {
  PortDisjointSet nets;
  nets.makeSet(1);
  EXPECT_THROW(nets.unite(1, 2), std::out_of_range);
  EXPECT_EQ(nets.findIfKnown(2), nullptr);
}

}  // namespace
}  // namespace gl::gti
