#pragma once

// The ports of all leaves of a network, numbered, and the domains that each of them belongs to.

#include "embedded/network_data/flat_network.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace embedded::network_data {

/// Ports of leaves in the order of systems and blocks. Blocks and ports have numbers; the ports of a block follow each
/// other, and so do the blocks of a system.
class LeafPorts {
 public:
  struct Block {
    GTBlock* block;
    std::uint32_t firstPort;
    std::uint32_t domain;  ///< `shared` for an opaque subsystem
  };
  struct Port {
    gtPort* port;
    std::uint32_t net;    ///< of its own system, as `FlatNetwork` counts
    std::uint32_t whole;  ///< which stands for all nets that are electrically one with it
  };
  static constexpr std::uint32_t shared = 0xffffffffu;

  LeafPorts(const FlatNetwork& network, const std::vector<std::string>& fallbackDomains);

  const std::vector<std::string>& domains() const { return domains_; }
  const std::vector<Block>& blocks() const { return blocks_; }
  const std::vector<Port>& ports() const { return ports_; }
  std::uint32_t endOfPorts(std::size_t block) const {
    return block + 1 < blocks_.size() ? blocks_[block + 1].firstPort : static_cast<std::uint32_t>(ports_.size());
  }
  /// First block of a system; those of the system end where those of the next one begin.
  std::uint32_t firstBlock(std::uint32_t system) const { return firstBlocks_[system]; }
  /// Domains in which a port of the block is told.
  std::vector<std::uint32_t> domainsOf(const Block& block, const Port& port) const;
  /// Domains in which the block is listed.
  std::vector<std::uint32_t> domainsOf(std::size_t block) const;

 private:
  void collect(const FlatNetwork& network);
  void nameDomains(const std::vector<std::string>& fallbackDomains);
  void touchNets();
  std::vector<std::uint32_t> domainsOfNet(std::uint32_t whole) const;

  std::vector<std::string> domains_;
  std::vector<Block> blocks_;
  std::vector<Port> ports_;
  std::vector<std::uint32_t> firstBlocks_;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> touched_;  ///< whole net and domain, ascending
  std::vector<std::uint32_t> anyDomain_;                          ///< for nets that only opaque subsystems touch
};

}  // namespace embedded::network_data
