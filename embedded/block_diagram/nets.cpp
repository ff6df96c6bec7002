// Nets of one system: classes of ports that lines join. Worked out on the first question after an edit.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/disjoint_set.hpp"
#include "embedded/block_diagram/system_data.hpp"

#include <algorithm>

namespace embedded::block_diagram {

namespace {

/// Numbers the ports of the system; the number stands in the place of the net's until the nets are known.
std::vector<gtPort*> numberedPorts(const System& system) {
  std::vector<gtPort*> all;
  for (const GTBlock* block : system.blocks()) {
    for (gtPort* port : block->host().ports) {
      port->host().net = static_cast<std::uint32_t>(all.size());
      all.push_back(port);
    }
  }
  return all;
}

void joinByLines(const System& system, DisjointSet& set) {
  for (const std::unique_ptr<Line>& line : system.lines()) {
    for (const gtPort* port : line->ports) set.unite(line->ports.front()->host().net, port->host().net);
  }
}

/// In a variant subsystem no lines count: the ports meet those of the active choice by side and name.
void joinByNames(const System& system, DisjointSet& set) {
  const GTBlock* choice = activeChoice(*system.owner());
  if (!choice) return;
  for (const GTBlock* ioPort : system.ioPorts()) {
    const gtPort* inner = subsystemPort(*choice, ioPort->getGrName());
    const bool left = ioPort->host().ioPort()->side == Side::Left;
    if (inner && inner->isLeft() == left) set.unite(ioPort->host().ports.front()->host().net, inner->host().net);
  }
}

bool isPassage(const gtPort* port) {
  const GTBlock& block = *port->getGrOwnerBlock();
  return isSubsystem(block) || isIoPort(block);
}

/// Whoever follows nets through the hierarchy asks passages only, never leaves: so a passage comes first where there is
/// one, then the order of handles.
bool comesBefore(const gtPort* a, const gtPort* b) {
  if (isPassage(a) != isPassage(b)) return isPassage(a);
  return a->host().handle < b->host().handle;
}

std::unique_ptr<Nets> collect(const std::vector<gtPort*>& all, DisjointSet& set) {
  auto nets = std::make_unique<Nets>();
  std::vector<std::uint32_t> numbers(all.size());
  std::vector<std::uint32_t> sizes;
  for (std::uint32_t i = 0; i < all.size(); ++i) {
    // The smallest member stands for its class, so it comes first.
    const std::uint32_t root = set.find(i);
    if (root == i) {
      numbers[i] = static_cast<std::uint32_t>(sizes.size());
      sizes.push_back(0);
    }
    numbers[i] = numbers[root];
    ++sizes[numbers[i]];
  }
  nets->members.resize(sizes.size());
  for (std::size_t net = 0; net < sizes.size(); ++net) nets->members[net].reserve(sizes[net]);
  for (std::uint32_t i = 0; i < all.size(); ++i) {
    all[i]->host().net = numbers[i];
    nets->members[numbers[i]].push_back(all[i]);
  }
  for (std::vector<gtPort*>& net : nets->members)
    std::iter_swap(net.begin(), std::min_element(net.begin(), net.end(), comesBefore));
  return nets;
}

}  // namespace

void netsChanged(System& system) {
  SystemAccess::data(system).nets.reset();
}

const Nets& netsOf(const System& system) {
  SystemData& data = SystemAccess::data(system);
  if (data.nets) return *data.nets;
  const std::vector<gtPort*> all = numberedPorts(system);
  DisjointSet set(all.size());
  if (system.owner() && isVariant(*system.owner())) {
    joinByNames(system, set);
  } else {
    joinByLines(system, set);
  }
  data.nets = collect(all, set);
  return *data.nets;
}

std::uint32_t netNumber(const gtPort& port) {
  netsOf(parentSystem(*port.getGrOwnerBlock()));
  return port.host().net;
}

const std::vector<gtPort*>& netOf(const gtPort& port) {
  const Nets& nets = netsOf(parentSystem(*port.getGrOwnerBlock()));
  return nets.members[port.host().net];
}

std::vector<const Line*> linesAt(const gtPort& port) {
  std::vector<const Line*> lines;
  if (!port.host().line) return lines;
  lines.push_back(port.host().line);
  const auto& more = SystemAccess::data(parentSystem(*port.getGrOwnerBlock())).moreLines;
  const auto found = more.find(&port);
  if (found != more.end()) lines.insert(lines.end(), found->second.begin(), found->second.end());
  return lines;
}

}  // namespace embedded::block_diagram
