#pragma once

// The network of a diagram across its hierarchy: visible systems, their nets, and which of these are electrically one.
// Made for one question and thrown away.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/disjoint_set.hpp"

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

namespace embedded::network_data {

/// One system that the network reaches: not inside an opaque subsystem, not in a choice that isn't active.
struct VisibleSystem {
  const block_diagram::System* system;
  std::uint32_t parent;    ///< number of the system around it; its own number at the top
  std::uint32_t firstNet;  ///< its nets have numbers from here on
};

class FlatNetwork {
 public:
  explicit FlatNetwork(const block_diagram::Diagram& diagram);

  /// Systems, outer ones before those inside them.
  const std::vector<VisibleSystem>& systems() const { return systems_; }
  std::uint32_t netCount() const { return netCount_; }
  /// Number of the net of a port in its own system, counted through all systems.
  std::uint32_t netAt(const gtPort& port, std::uint32_t system) const;

  /// Joins the nets inside a system with those around it, through its I/O ports, in `set`.
  void joinOutward(std::uint32_t system, block_diagram::DisjointSet& set) const;
  /// Nets that are electrically one, through all levels.
  block_diagram::DisjointSet wholeNets() const;

  /// Leaves of a system: blocks of a domain, and opaque subsystems.
  std::vector<GTBlock*> leaves(std::uint32_t system) const;

 private:
  std::vector<VisibleSystem> systems_;
  std::uint32_t netCount_ = 0;
};

bool isLeaf(const GTBlock& block);

}  // namespace embedded::network_data
