#include "embedded/network_data/flat_network.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/system_data.hpp"

#include <algorithm>

namespace embedded::network_data {

using namespace block_diagram;

bool isLeaf(const GTBlock& block) {
  return isSubsystem(block) ? isOpaque(block) : block.isPhysicalNetworkBlock();
}

FlatNetwork::FlatNetwork(const Diagram& diagram) {
  const auto add = [this](const System& system, std::uint32_t parent) {
    systems_.push_back({&system, parent, netCount_});
    netCount_ += static_cast<std::uint32_t>(netsOf(system).members.size());
  };
  // A diagram that is an opaque's inside doesn't exist, so the top is always visible.
  std::vector<std::pair<const System*, std::uint32_t>> pending{{&diagram.root(), 0}};
  while (!pending.empty()) {
    const auto [system, parent] = pending.back();
    pending.pop_back();
    const auto number = static_cast<std::uint32_t>(systems_.size());
    add(*system, parent);
    const std::vector<GTBlock*> blocks = activeBlocks(*system);
    for (auto block = blocks.rbegin(); block != blocks.rend(); ++block) {
      if (isSubsystem(**block) && !isOpaque(**block)) pending.emplace_back(contents(**block), number);
    }
  }
}

std::uint32_t FlatNetwork::netAt(const gtPort& port, std::uint32_t system) const {
  return systems_[system].firstNet + port.host().net;
}

void FlatNetwork::joinOutward(std::uint32_t number, DisjointSet& set) const {
  const VisibleSystem& inner = systems_[number];
  for (const GTBlock* ioPort : inner.system->ioPorts())
    set.unite(netAt(*ioPort->host().ports.front(), number), netAt(*outerPort(*ioPort), inner.parent));
}

DisjointSet FlatNetwork::wholeNets() const {
  DisjointSet set(netCount_);
  for (std::uint32_t i = 1; i < systems_.size(); ++i) joinOutward(i, set);
  return set;
}

std::vector<GTBlock*> FlatNetwork::leaves(std::uint32_t system) const {
  std::vector<GTBlock*> blocks = activeBlocks(*systems_[system].system);
  blocks.erase(std::remove_if(blocks.begin(), blocks.end(), [](const GTBlock* block) { return !isLeaf(*block); }),
               blocks.end());
  return blocks;
}

}  // namespace embedded::network_data
