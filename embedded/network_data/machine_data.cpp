#include "embedded/network_data/machine_data.hpp"

#include "embedded/network_data/flat_nets.hpp"

struct Connection_tag {
  const Connection_tag* next = nullptr;
  const GTBlock* block = nullptr;  ///< of a chain's head
  const gtPort* near = nullptr;    ///< null for a port that nothing is joined to
  const gtPort* far = nullptr;
};

struct ListItem_tag {
  const ListItem_tag* next = nullptr;
  Connection_tag head;
};

struct KMMachineData_tag {
  std::string name;
  std::vector<ListItem_tag> items;
  std::vector<Connection_tag> connections;  ///< chains follow each other, in the order of the items
};

namespace embedded::network_data {

namespace {

/// The far ports of every leaf port: those of port i stand from `first[i]` to `first[i + 1]`.
struct FarPorts {
  std::vector<std::size_t> first;
  std::vector<std::uint32_t> far;
};

/// Calls `visit` with every pair, once.
template <class Visit>
void eachPair(const FlatNets& nets, Listing listing, const Visit& visit) {
  if (listing == Listing::Spanning) {
    for (const PortPair& pair : nets.spanning) visit(pair.a, pair.b);
    return;
  }
  std::vector<std::vector<std::uint32_t>> members(nets.netCount);
  for (std::uint32_t i = 0; i < nets.ports.size(); ++i) members[nets.ports[i].net].push_back(i);
  for (const auto& net : members) {
    for (std::size_t a = 0; a < net.size(); ++a) {
      for (std::size_t b = a + 1; b < net.size(); ++b) visit(net[a], net[b]);
    }
  }
}

FarPorts farPorts(const FlatNets& nets, Listing listing) {
  FarPorts result;
  result.first.assign(nets.ports.size() + 1, 0);
  eachPair(nets, listing, [&](std::uint32_t a, std::uint32_t b) {
    ++result.first[a + 1];
    ++result.first[b + 1];
  });
  for (std::size_t i = 1; i < result.first.size(); ++i) result.first[i] += result.first[i - 1];
  result.far.resize(result.first.back());
  std::vector<std::size_t> next(result.first.begin(), result.first.end() - 1);
  eachPair(nets, listing, [&](std::uint32_t a, std::uint32_t b) {
    result.far[next[a]++] = b;
    result.far[next[b]++] = a;
  });
  return result;
}

/// Elements of the chains: one for each pair from this end, and one for each port that nothing is joined to.
std::size_t elementCount(const FarPorts& far) {
  std::size_t count = far.far.size();
  for (std::size_t i = 0; i + 1 < far.first.size(); ++i) count += far.first[i] == far.first[i + 1] ? 1 : 0;
  return count;
}

void addPort(const FlatNets& nets, const FarPorts& far, std::uint32_t port, std::vector<Connection_tag>& chain) {
  const std::size_t begin = far.first[port];
  const std::size_t end = far.first[port + 1];
  if (begin == end) chain.push_back({});
  for (std::size_t i = begin; i < end; ++i) {
    chain.push_back({nullptr, nullptr, nets.ports[port].port, nets.ports[far.far[i]].port});
  }
}

void addItem(const FlatNets& nets, const FarPorts& far, const Leaf& leaf, KMMachineData_tag& data) {
  ListItem_tag& item = data.items.emplace_back();
  item.head.block = leaf.block;
  const std::size_t begin = data.connections.size();
  for (std::uint32_t i = 0; i < leaf.portCount; ++i) addPort(nets, far, leaf.firstPort + i, data.connections);
  Connection_tag* last = &item.head;
  for (std::size_t i = begin; i < data.connections.size(); ++i) {
    last->next = &data.connections[i];
    last = &data.connections[i];
  }
}

}  // namespace

MachineData::MachineData(const block_diagram::Diagram& diagram, const std::string& domain, Listing listing)
    : data_(std::make_unique<KMMachineData_tag>()) {
  const FlatNets nets = flatNets(diagram, domain);
  const FarPorts far = farPorts(nets, listing);
  data_->name = diagram.name();
  data_->items.reserve(nets.leaves.size());
  data_->connections.reserve(elementCount(far));
  for (const Leaf& leaf : nets.leaves) addItem(nets, far, leaf, *data_);
  for (std::size_t i = 0; i + 1 < data_->items.size(); ++i) data_->items[i].next = &data_->items[i + 1];
}

MachineData::~MachineData() = default;
MachineData::MachineData(MachineData&&) noexcept = default;
MachineData& MachineData::operator=(MachineData&&) noexcept = default;

PortLists portLists(const block_diagram::Diagram& diagram, const std::string& domain) {
  const FlatNets nets = flatNets(diagram, domain);
  PortLists lists;
  auto& group = lists.nets.emplace_back(nets.netCount);
  for (const LeafPort& leaf : nets.ports) group[leaf.net].push_back(const_cast<gtPort*>(leaf.port));
  for (const Leaf& leaf : nets.leaves) lists.blocks.push_back(const_cast<GTBlock*>(leaf.block));
  return lists;
}

}  // namespace embedded::network_data

namespace {

const gtPort* portAt(const Connection_tag* connection, kmPortOrient orientation) {
  return orientation == KM_PORT_NEAR ? connection->near : connection->far;
}

}  // namespace

const char* kmGetMachineRootBDName(const KMMachineData_tag* machine) {
  return machine->name.c_str();
}

const ListItem_tag* kmGetMachineDataList(const KMMachineData_tag* machine) {
  return machine->items.empty() ? nullptr : &machine->items.front();
}

const ListItem_tag* kmGetListItemNextItem(const ListItem_tag* item) {
  return item->next;
}
const Connection_tag* kmGetListItemConnection(const ListItem_tag* item) {
  return &item->head;
}
const Connection_tag* kmGetConnectionNextConnection(const Connection_tag* connection) {
  return connection->next;
}
double kmGetBlockHandle(const Connection_tag* head) {
  return head->block->getHandle();
}
ustring kmGetBlockFullName(const Connection_tag* head) {
  return head->block->getFullPath(false);
}

double kmGetPortHandle(const Connection_tag* connection, kmPortOrient orientation) {
  const gtPort* port = portAt(connection, orientation);
  return port ? gp_handle(port) : -1.0;
}

kmPortSide kmGetPortSide(const Connection_tag* connection, kmPortOrient orientation) {
  const gtPort* port = portAt(connection, orientation);
  return port && port->isLeft() ? KM_SIDE_LEFT : KM_SIDE_RIGHT;
}

int kmGetPortIndex(const Connection_tag* connection, kmPortOrient orientation) {
  const gtPort* port = portAt(connection, orientation);
  return port ? port->index : 0;
}
