// Connectivity from machine data, which here is whatever a test writes down: repeated blocks, foreign roots, ports of
// nobody.

#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "platform/network_data/network_data.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

/// An element of a block's chain; the head tells of the block.
struct Connection_tag {
  double nearPort = -1;
  double farPort = -1;
  kmPortSide side = KM_SIDE_RIGHT;
  int index = 0;
  double block = 0;
  ustring name;
  const Connection_tag* next = nullptr;
};

struct ListItem_tag {
  std::vector<Connection_tag> chain;
  const ListItem_tag* next = nullptr;
};

struct KMMachineData_tag {
  std::string model;
  std::vector<ListItem_tag> items;
};

const char* kmGetMachineRootBDName(const KMMachineData_tag* machine) {
  return machine->model.c_str();
}
const ListItem_tag* kmGetMachineDataList(const KMMachineData_tag* machine) {
  return machine->items.empty() ? nullptr : &machine->items.front();
}
const ListItem_tag* kmGetListItemNextItem(const ListItem_tag* item) {
  return item->next;
}
const Connection_tag* kmGetListItemConnection(const ListItem_tag* item) {
  return &item->chain.front();
}
const Connection_tag* kmGetConnectionNextConnection(const Connection_tag* connection) {
  return connection->next;
}
double kmGetBlockHandle(const Connection_tag* head) {
  return head->block;
}
ustring kmGetBlockFullName(const Connection_tag* head) {
  return head->name;
}
double kmGetPortHandle(const Connection_tag* connection, kmPortOrient orientation) {
  return orientation == KM_PORT_NEAR ? connection->nearPort : connection->farPort;
}
kmPortSide kmGetPortSide(const Connection_tag* connection, kmPortOrient) {
  return connection->side;
}
int kmGetPortIndex(const Connection_tag* connection, kmPortOrient) {
  return connection->index;
}

namespace gl::gti {
namespace {

using kinemo::test::error_of;

/// Writes machine data down, block by block.
class Machine {
 public:
  explicit Machine(const std::string& model) { data_.model = model; }

  Machine& block(double handle, const ustring& name, std::vector<Connection_tag> connections = {}) {
    Connection_tag head;
    head.block = handle;
    head.name = name;
    connections.insert(connections.begin(), head);
    data_.items.push_back({connections, nullptr});
    return *this;
  }
  ModelConnectivity connectivity() {
    for (std::size_t i = 0; i < data_.items.size(); ++i) {
      std::vector<Connection_tag>& chain = data_.items[i].chain;
      for (std::size_t c = 0; c + 1 < chain.size(); ++c) chain[c].next = &chain[c + 1];
      data_.items[i].next = i + 1 < data_.items.size() ? &data_.items[i + 1] : nullptr;
    }
    return ModelConnectivity(&data_);
  }

 private:
  KMMachineData_tag data_;
};

Connection_tag joined(double nearPort, double farPort, kmPortSide side = KM_SIDE_RIGHT, int index = 0) {
  Connection_tag connection;
  connection.nearPort = nearPort;
  connection.farPort = farPort;
  connection.side = side;
  connection.index = index;
  return connection;
}

TEST(MachineData, EmptyMachineGivesAModelWithoutBlocks) {
  const ModelConnectivity connectivity = Machine("m").connectivity();
  EXPECT_EQ(connectivity.modelName(), "m");
  EXPECT_TRUE(connectivity.blockHandles().empty());
}

TEST(MachineData, PortsWithoutAConnectionAreSkipped) {
  auto connectivity = Machine("m").block(1, u"m/A", {joined(-1, -1), joined(-1, 7)}).connectivity();
  EXPECT_TRUE(connectivity.connections(1).empty());
}

TEST(MachineData, RecordsKeepTheOrderOfTheChain) {
  auto connectivity = Machine("m")
                          .block(2, u"m/B", {joined(20, 11, KM_SIDE_LEFT, -3), joined(20, 10)})
                          .block(1, u"m/A", {joined(10, 20), joined(11, 20)})
                          .connectivity();
  EXPECT_THAT(connectivity.blockHandles(), ::testing::ElementsAre(1, 2));
  const std::vector<BlockConnection>& records = connectivity.connections(2);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].destination.portHandle, 11);
  EXPECT_EQ(records[0].destination.blockHandle, 1);
  EXPECT_EQ(records[0].source.side, port_side::LEFT);
  EXPECT_EQ(records[0].source.index, -3);
  EXPECT_EQ(records[1].source.side, port_side::RIGHT);
  EXPECT_EQ(records[1].destination.portHandle, 10);
}

TEST(MachineData, FaultsOfBlocksAreErrors) {
  const std::string group = "kinemo:common:gl:gti:connectivity:";
  const double handle = 0.1;
  struct Case {
    Machine machine;
    std::string error;
  };
  const double infinite = std::numeric_limits<double>::infinity();
  std::vector<Case> cases{
      {Machine("m").block(handle, u"m/A").block(handle, u"other/B"), "DuplicateBlockHandles(0.10000000000000001)"},
      {Machine("m").block(-infinite, u"m/A").block(-infinite, u"m/A"), "DuplicateBlockHandles(-inf)"},
      {Machine("m").block(std::nextafter(handle, 1), u"m/A").block(handle, u"other/B"), "InvalidBlockName(other/B, m)"},
      {Machine("m").block(1, u"m//A/B"), "InvalidBlockName(m//A/B, m)"},
      {Machine("m").block(1, u"/m"), "InvalidBlockName(/m, m)"},
      {Machine("m//n").block(1, u"m//n/A"), ""},
      {Machine("m\xc3\xa4").block(1, u"m\u00e4/A"), ""},
      {Machine("m").block(1, u"m"), ""}};
  for (Case& c : cases) {
    EXPECT_EQ(error_of([&] { c.machine.connectivity(); }), c.error.empty() ? "" : group + c.error);
  }
}

TEST(MachineData, PortOfNobodyAtTheFarEndIsOutOfRangeAndStaysSo) {
  auto connectivity = Machine("m").block(1, u"m/A", {joined(10, 99)}).block(2, u"m/B").connectivity();
  for (int i = 0; i < 2; ++i) EXPECT_THROW(connectivity.connections(2), std::out_of_range);
}

}  // namespace
}  // namespace gl::gti
