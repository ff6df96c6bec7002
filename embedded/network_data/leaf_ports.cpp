#include "embedded/network_data/leaf_ports.hpp"

#include "embedded/block_diagram/block_data.hpp"

#include <algorithm>
#include <numeric>

namespace embedded::network_data {

using namespace block_diagram;

namespace {

void makeUnique(auto& sorted) {
  sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
}

}  // namespace

LeafPorts::LeafPorts(const FlatNetwork& network, const std::vector<std::string>& fallbackDomains) {
  collect(network);
  nameDomains(fallbackDomains);
  touchNets();
}

void LeafPorts::collect(const FlatNetwork& network) {
  DisjointSet wholes = network.wholeNets();
  for (std::uint32_t system = 0; system < network.systems().size(); ++system) {
    firstBlocks_.push_back(static_cast<std::uint32_t>(blocks_.size()));
    for (GTBlock* block : network.leaves(system)) {
      blocks_.push_back({block, static_cast<std::uint32_t>(ports_.size()), shared});
      for (gtPort* port : block->host().ports) {
        const std::uint32_t net = network.netAt(*port, system);
        ports_.push_back({port, net, wholes.find(net)});
      }
    }
  }
  firstBlocks_.push_back(static_cast<std::uint32_t>(blocks_.size()));
}

void LeafPorts::nameDomains(const std::vector<std::string>& fallbackDomains) {
  for (const Block& block : blocks_) {
    if (isSubsystem(*block.block)) continue;
    const std::string name = block.block->getDomainName();
    if (domains_.empty() || domains_.back() != name) domains_.push_back(name);
    if (domains_.size() < 64) continue;
    std::sort(domains_.begin(), domains_.end());
    makeUnique(domains_);
  }
  const bool opaqueOnly = domains_.empty() && !blocks_.empty();
  if (opaqueOnly) domains_ = fallbackDomains;
  std::sort(domains_.begin(), domains_.end());
  makeUnique(domains_);
  for (Block& block : blocks_) {
    if (isSubsystem(*block.block)) continue;
    const auto found = std::lower_bound(domains_.begin(), domains_.end(), block.block->getDomainName());
    block.domain = static_cast<std::uint32_t>(found - domains_.begin());
  }
  anyDomain_.resize(opaqueOnly ? domains_.size() : 1);
  std::iota(anyDomain_.begin(), anyDomain_.end(), 0u);
}

void LeafPorts::touchNets() {
  if (domains_.size() < 2) return;  // then `anyDomain_` says it all
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    if (blocks_[i].domain == shared) continue;
    for (std::uint32_t p = blocks_[i].firstPort; p < endOfPorts(i); ++p)
      touched_.emplace_back(ports_[p].whole, blocks_[i].domain);
  }
  std::sort(touched_.begin(), touched_.end());
  makeUnique(touched_);
}

std::vector<std::uint32_t> LeafPorts::domainsOfNet(std::uint32_t whole) const {
  std::vector<std::uint32_t> found;
  auto at = std::lower_bound(touched_.begin(), touched_.end(), std::make_pair(whole, 0u));
  for (; at != touched_.end() && at->first == whole; ++at) found.push_back(at->second);
  return found;
}

std::vector<std::uint32_t> LeafPorts::domainsOf(const Block& block, const Port& port) const {
  if (block.domain != shared) return {block.domain};
  std::vector<std::uint32_t> found = domainsOfNet(port.whole);
  return found.empty() ? anyDomain_ : found;
}

std::vector<std::uint32_t> LeafPorts::domainsOf(std::size_t i) const {
  if (blocks_[i].domain != shared) return {blocks_[i].domain};
  std::vector<std::uint32_t> all;
  for (std::uint32_t p = blocks_[i].firstPort; p < endOfPorts(i); ++p) {
    for (const std::uint32_t domain : domainsOf(blocks_[i], ports_[p])) all.push_back(domain);
  }
  if (all.empty()) return anyDomain_;
  std::sort(all.begin(), all.end());
  makeUnique(all);
  return all;
}

}  // namespace embedded::network_data
