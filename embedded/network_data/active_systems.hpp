#pragma once

#include "embedded/block_diagram/diagram.hpp"

#include <cstdint>
#include <vector>

namespace embedded::network_data {

/// One system of the network, and the number of its first net among those of all systems.
struct ActiveSystem {
  const block_diagram::System* system;
  std::uint32_t parent;  ///< place of the system around it; of the top, its own
  std::uint32_t firstNet;
};

/// Systems that belong to the network, each before those inside it: inactive variants and the insides of opaque
/// subsystems are left out.
std::vector<ActiveSystem> activeSystems(const block_diagram::Diagram& diagram);

/// Whether the block takes part in the network as a whole, with its inside unseen.
bool isLeaf(const GTBlock& block);
/// Whether the block is a leaf of the domain. Opaque subsystems belong to every domain that a type of their ports'
/// neighbours names, and to any domain when none does.
bool isLeafOf(const GTBlock& block, const std::string& domain);

}  // namespace embedded::network_data
