#include "embedded/network_data/flat_nets.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/disjoint_set.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "embedded/network_data/active_systems.hpp"

#include <algorithm>
#include <limits>
#include <set>
#include <unordered_map>

namespace embedded::network_data {

using namespace block_diagram;

namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

/// What stands for a part of a net in one system.
struct Item {
  std::uint32_t net;    ///< flat net
  double levelHandle;   ///< by which the system's level knows it
  std::uint32_t port;   ///< leaf port that stands for it
  std::uint32_t local;  ///< class of the system's nets that the port at this level is in
};

class Builder {
 public:
  Builder(const Diagram& diagram, const std::string& domain)
      : domain_(domain), systems_(activeSystems(diagram)), flat_(total()), level_(total()), items_(systems_.size()) {}

  FlatNets run() {
    joinAcrossLevels();
    joinThroughSubsystems();
    listLeaves();
    for (std::size_t i = systems_.size(); i-- > 0;) pairItems(i);
    return std::move(result_);
  }

 private:
  std::size_t total() const {
    const ActiveSystem& last = systems_.back();
    return last.firstNet + netsOf(*last.system).members.size();
  }

  std::uint32_t netAt(std::size_t system, const gtPort& port) const {
    return systems_[system].firstNet + netNumber(port);
  }
  std::uint32_t innerNet(std::size_t system, const GTBlock& ioPort) const {
    return netAt(system, *ioPort.getGrRightConnectionPort(0));
  }
  std::uint32_t outerNet(std::size_t system, const GTBlock& ioPort) const {
    return netAt(systems_[system].parent, *outerPort(ioPort));
  }

  /// One class for each flat net.
  void joinAcrossLevels() {
    for (std::size_t i = 1; i < systems_.size(); ++i) {
      for (const GTBlock* ioPort : systems_[i].system->ioPorts())
        flat_.unite(innerNet(i, *ioPort), outerNet(i, *ioPort));
    }
  }

  /// One class for each net as its own system sees it, passages through subsystems included; from the bottom up.
  void joinThroughSubsystems() {
    std::unordered_map<std::uint32_t, std::uint32_t> firstOuter;
    for (std::size_t i = systems_.size(); i-- > 1;) {
      firstOuter.clear();
      for (const GTBlock* ioPort : systems_[i].system->ioPorts()) {
        const std::uint32_t outer = outerNet(i, *ioPort);
        const auto place = firstOuter.emplace(level_.find(innerNet(i, *ioPort)), outer);
        level_.unite(place.first->second, outer);
      }
    }
  }

  void listLeaves() {
    std::vector<std::uint32_t> numbers(flat_.size(), kNone);
    for (std::size_t i = 0; i < systems_.size(); ++i) {
      for (const GTBlock* block : activeBlocks(*systems_[i].system)) {
        if (isLeafOf(*block, domain_)) addLeaf(i, *block, numbers);
      }
    }
  }

  void addLeaf(std::size_t system, const GTBlock& block, std::vector<std::uint32_t>& numbers) {
    const std::vector<gtPort*> all = ports(block);
    const auto first = static_cast<std::uint32_t>(result_.ports.size());
    result_.leaves.push_back({&block, first, static_cast<std::uint32_t>(all.size())});
    for (const gtPort* port : all) {
      const std::uint32_t local = netAt(system, *port);
      std::uint32_t& number = numbers[flat_.find(local)];
      if (number == kNone) number = result_.netCount++;
      items_[system].push_back(
          {number, gp_handle(port), static_cast<std::uint32_t>(result_.ports.size()), level_.find(local)});
      result_.ports.push_back({port, number});
    }
  }

  /// Joins the items of each net in the system, and hands the first of each upward.
  void pairItems(std::size_t system) {
    std::vector<Item> items = std::move(items_[system]);
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) {
      return a.net != b.net ? a.net < b.net : a.levelHandle < b.levelHandle;
    });
    const Exits exits = system == 0 ? Exits{} : exitsOf(system);
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (i > 0 && items[i - 1].net == items[i].net) {
        result_.spanning.push_back({items[i - 1].port, items[i].port});
      } else if (system > 0) {
        raise(system, items[i], exits);
      }
    }
  }

  /// For each class of a system's nets, the I/O port block through which it leaves.
  using Exits = std::unordered_map<std::uint32_t, const GTBlock*>;

  /// Of the I/O ports on a class the one of the lowest order counts, then the one of the smallest handle.
  Exits exitsOf(std::size_t system) {
    Exits exits;
    for (const GTBlock* ioPort : systems_[system].system->ioPorts()) {
      const GTBlock*& chosen = exits[level_.find(innerNet(system, *ioPort))];
      if (!chosen || precedes(*ioPort, *chosen)) chosen = ioPort;
    }
    return exits;
  }

  static bool precedes(const GTBlock& a, const GTBlock& b) {
    const int orderA = a.host().ioPort()->order;
    const int orderB = b.host().ioPort()->order;
    return orderA != orderB ? orderA < orderB : a.getHandle() < b.getHandle();
  }

  void raise(std::size_t system, const Item& item, const Exits& exits) {
    const auto exit = exits.find(item.local);
    if (exit == exits.end()) return;
    const std::uint32_t parent = systems_[system].parent;
    const gtPort& outer = *outerPort(*exit->second);
    items_[parent].push_back({item.net, gp_handle(&outer), item.port, level_.find(netAt(parent, outer))});
  }

  std::string domain_;
  std::vector<ActiveSystem> systems_;
  DisjointSet flat_;
  DisjointSet level_;
  std::vector<std::vector<Item>> items_;  ///< by system
  FlatNets result_;
};

}  // namespace

FlatNets flatNets(const Diagram& diagram, const std::string& domain) {
  return Builder(diagram, domain).run();
}

std::vector<std::string> domainsIn(const Diagram& diagram) {
  std::set<std::string> names;
  for (const ActiveSystem& active : activeSystems(diagram)) {
    for (const GTBlock* block : activeBlocks(*active.system)) {
      if (isLeaf(*block) && !isSubsystem(*block) && block->getDomainName()) names.insert(block->getDomainName());
    }
  }
  return {names.begin(), names.end()};
}

}  // namespace embedded::network_data
