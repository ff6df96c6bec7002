#pragma once

// Which ports of leaves are told to be joined: the choice of pairs behind the machine data.

#include "embedded/network_data/leaf_ports.hpp"

#include <cstdint>
#include <vector>

namespace embedded::network_data {

/// Two ports of leaves by number, in one domain. Told from both ends.
struct Pair {
  std::uint32_t domain;
  std::uint32_t a;
  std::uint32_t b;
};

/// n-1 pairs of a net of n ports. In every system that the net touches, its items are the leaf ports right there, and
/// for each subsystem in it with members one leaf port that stands for all of them. An item has a level handle: the
/// handle of the leaf port itself, or of the port of the subsystem's icon through which the net leaves it. All items
/// are paired with the one of the smallest level handle, and its leaf port stands for the system in the one around. A
/// fold of the hierarchy that takes the smallest handle for a net thus gets from these pairs what it gets from all.
std::vector<Pair> spanningPairs(const FlatNetwork& network, const LeafPorts& leaves);

/// Each two ports of a net.
std::vector<Pair> allPairs(const LeafPorts& leaves);

}  // namespace embedded::network_data
