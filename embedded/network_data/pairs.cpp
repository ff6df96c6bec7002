#include "embedded/network_data/pairs.hpp"

#include "embedded/block_diagram/block_data.hpp"

#include <algorithm>
#include <tuple>
#include <unordered_map>

namespace embedded::network_data {

using namespace block_diagram;

namespace {

/// A leaf port, or what stands for a subsystem, as an item of one net in one system.
struct Item {
  std::uint32_t whole;
  std::uint32_t domain;
  double level;        ///< handle by which the system knows it
  std::uint32_t leaf;  ///< number of the leaf port
  std::uint32_t net;   ///< the system's net that it is on
};

bool sameNet(const Item& a, const Item& b) {
  return a.whole == b.whole && a.domain == b.domain;
}
bool comesBefore(const Item& a, const Item& b) {
  return std::tie(a.whole, a.domain, a.level) < std::tie(b.whole, b.domain, b.level);
}

void addLeaves(const LeafPorts& leaves, std::uint32_t system, std::vector<Item>& items) {
  for (std::uint32_t i = leaves.firstBlock(system); i < leaves.firstBlock(system + 1); ++i) {
    const LeafPorts::Block& block = leaves.blocks()[i];
    for (std::uint32_t p = block.firstPort; p < leaves.endOfPorts(i); ++p) {
      const LeafPorts::Port& port = leaves.ports()[p];
      for (const std::uint32_t domain : leaves.domainsOf(block, port))
        items.push_back({port.whole, domain, port.port->getHandle(), p, port.net});
    }
  }
}

/// Calls `run(first, last)` for the items of each net; sorts them first.
template <class Run>
void forEachNet(std::vector<Item>& items, Run run) {
  std::sort(items.begin(), items.end(), comesBefore);
  for (auto first = items.begin(); first != items.end();) {
    const auto last = std::find_if(first, items.end(), [&](const Item& item) { return !sameNet(*first, item); });
    run(first, last);
    first = last;
  }
}

/// Works from the innermost systems outward. `inside_` joins the nets of a system as far as it and what it holds join
/// them; what is joined outside of it only is added when it is done.
class Spanning {
 public:
  Spanning(const FlatNetwork& network, const LeafPorts& leaves)
      : network_(network), leaves_(leaves), inside_(network.netCount()), items_(network.systems().size()) {}

  std::vector<Pair> run() {
    for (auto system = static_cast<std::uint32_t>(items_.size()); system-- > 0;) {
      std::vector<Item> items = std::move(items_[system]);
      addLeaves(leaves_, system, items);
      pairItems(system, items);
      if (system > 0) network_.joinOutward(system, inside_);
    }
    return std::move(pairs_);
  }

 private:
  void pairItems(std::uint32_t system, std::vector<Item>& items) {
    const Exits exits = exitsOf(system, items.empty());
    forEachNet(items, [&](auto first, auto last) {
      for (auto other = first + 1; other != last; ++other) pairs_.push_back({first->domain, first->leaf, other->leaf});
      const auto exit = exits.find(inside_.find(first->net));
      if (exit != exits.end()) leave(system, *first, *exit->second);
    });
  }

  /// By net, the I/O port block through which a fold leads it: of the smallest order, then of the smallest handle.
  using Exits = std::unordered_map<std::uint32_t, const GTBlock*>;

  Exits exitsOf(std::uint32_t system, bool nothingToLead) {
    Exits exits;
    if (nothingToLead) return exits;
    for (const GTBlock* ioPort : network_.systems()[system].system->ioPorts()) {
      const GTBlock*& best = exits[inside_.find(network_.netAt(*ioPort->host().ports.front(), system))];
      if (!best || rank(ioPort) < rank(best)) best = ioPort;
    }
    return exits;
  }

  static std::pair<int, double> rank(const GTBlock* ioPort) {
    return {ioPort->host().ioPort()->order, ioPort->getHandle()};
  }

  void leave(std::uint32_t system, const Item& item, const GTBlock& ioPort) {
    const std::uint32_t parent = network_.systems()[system].parent;
    const gtPort* outer = outerPort(ioPort);
    items_[parent].push_back({item.whole, item.domain, outer->getHandle(), item.leaf, network_.netAt(*outer, parent)});
  }

  const FlatNetwork& network_;
  const LeafPorts& leaves_;
  DisjointSet inside_;
  std::vector<std::vector<Item>> items_;  ///< what came out of the systems inside, by system
  std::vector<Pair> pairs_;
};

}  // namespace

std::vector<Pair> spanningPairs(const FlatNetwork& network, const LeafPorts& leaves) {
  return Spanning(network, leaves).run();
}

std::vector<Pair> allPairs(const LeafPorts& leaves) {
  std::vector<Item> items;
  for (std::uint32_t system = 0; leaves.firstBlock(system) < leaves.blocks().size(); ++system)
    addLeaves(leaves, system, items);
  std::vector<Pair> pairs;
  forEachNet(items, [&](auto first, auto last) {
    for (auto a = first; a != last; ++a) {
      for (auto b = a + 1; b != last; ++b) pairs.push_back({a->domain, a->leaf, b->leaf});
    }
  });
  return pairs;
}

}  // namespace embedded::network_data
