#pragma once

// The nets of a whole diagram: which ports of leaf blocks are one node, through subsystems, variants and plain wires.
// Made for one question and thrown away; it holds pointers into the diagram.

#include "embedded/block_diagram/diagram.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace embedded::network_data {

/// A port of a leaf, and what numbers it goes by.
struct LeafPort {
  const gtPort* port;
  std::uint32_t net;  ///< number of the flat net
};

/// A leaf of the network: a block of a domain, or an opaque subsystem.
struct Leaf {
  const GTBlock* block;
  std::uint32_t firstPort;  ///< in the list of leaf ports; the block's ports follow each other there
  std::uint32_t portCount;
};

/// Two leaf ports, by their places in the list of leaf ports.
struct PortPair {
  std::uint32_t a;
  std::uint32_t b;
};

struct FlatNets {
  std::vector<Leaf> leaves;     ///< systems from the top down, blocks as they were placed
  std::vector<LeafPort> ports;  ///< of all leaves
  std::uint32_t netCount = 0;
  std::vector<PortPair> spanning;  ///< for each net of n ports n - 1 pairs that join them
};

/// Pairs are chosen so that whoever folds the hierarchy level by level finds the graph that all pairs would give. In
/// each system the items of a net are the leaf ports that lie in it and, for each subsystem in it that holds more of
/// the net, one port that stands for all of these. Items are told in the order of the handles by which the system's own
/// level knows them (the port's, or that of the subsystem's port through which the net leaves) and joined in a row; the
/// first one stands for the system.
FlatNets flatNets(const block_diagram::Diagram& diagram, const std::string& domain);

/// Domains of the blocks in the diagram's network, ascending. Inactive variants and hidden insides don't count.
std::vector<std::string> domainsIn(const block_diagram::Diagram& diagram);

}  // namespace embedded::network_data
