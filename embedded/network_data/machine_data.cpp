#include "embedded/network_data/machine_data.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/network_data/pairs.hpp"
#include "embedded/network_data/records.hpp"

#include <algorithm>
#include <unordered_map>

namespace embedded::network_data {

namespace {

/// For each port of a leaf, its partners in one domain.
class Partners {
 public:
  Partners(const std::vector<Pair>& pairs, std::uint32_t domain, std::size_t ports) : starts_(ports + 1) {
    const auto each = [&](auto visit) {
      for (const Pair& pair : pairs) {
        if (pair.domain != domain) continue;
        visit(pair.a, pair.b);
        visit(pair.b, pair.a);
      }
    };
    each([this](std::uint32_t from, std::uint32_t) { ++starts_[from + 1]; });
    for (std::size_t i = 1; i < starts_.size(); ++i) starts_[i] += starts_[i - 1];
    partners_.resize(starts_.back());
    std::vector<std::size_t> next(starts_.begin(), starts_.end() - 1);
    each([&](std::uint32_t from, std::uint32_t to) { partners_[next[from]++] = to; });
  }

  const std::uint32_t* begin(std::size_t port) const { return partners_.data() + starts_[port]; }
  const std::uint32_t* end(std::size_t port) const { return partners_.data() + starts_[port + 1]; }
  std::size_t count() const { return partners_.size(); }

 private:
  std::vector<std::size_t> starts_;
  std::vector<std::uint32_t> partners_;
};

/// The chain of one block: its head, then its ports with what they are joined to, or with nothing.
void addChain(const LeafPorts& leaves, std::size_t block, const Partners& partners,
              std::vector<Connection_tag>& chain) {
  chain.push_back({leaves.blocks()[block].block, nullptr});
  for (std::uint32_t p = leaves.blocks()[block].firstPort; p < leaves.endOfPorts(block); ++p) {
    const gtPort* near = leaves.ports()[p].port;
    if (partners.begin(p) == partners.end(p)) chain.push_back({near, nullptr});
    for (const std::uint32_t* far = partners.begin(p); far != partners.end(p); ++far)
      chain.push_back({near, leaves.ports()[*far].port});
  }
}

std::unique_ptr<KMMachineData_tag> makeMachine(const std::string& model, const LeafPorts& leaves,
                                               const std::vector<std::size_t>& blocks, std::uint32_t domain,
                                               const std::vector<Pair>& pairs) {
  auto machine = std::make_unique<KMMachineData_tag>();
  machine->model = model;
  machine->domain = leaves.domains()[domain];
  const Partners partners(pairs, domain, leaves.ports().size());
  machine->chain.reserve(partners.count() + blocks.size() + 1);
  std::vector<std::size_t> heads;
  for (const std::size_t block : blocks) {
    heads.push_back(machine->chain.size());
    addChain(leaves, block, partners, machine->chain);
  }
  machine->chain.push_back({nullptr, nullptr});
  machine->items.reserve(heads.size() + 1);
  for (const std::size_t head : heads) machine->items.push_back({&machine->chain[head]});
  machine->items.push_back({nullptr});
  return machine;
}

}  // namespace

MachineData::MachineData(const block_diagram::Diagram& diagram, Listing listing,
                         const std::vector<std::string>& fallbackDomains) {
  const FlatNetwork network(diagram);
  const LeafPorts leaves(network, fallbackDomains);
  const std::vector<Pair> pairs = listing == Listing::Spanning ? spanningPairs(network, leaves) : allPairs(leaves);
  std::vector<std::vector<std::size_t>> blocks(leaves.domains().size());
  for (std::size_t i = 0; i < leaves.blocks().size() && !blocks.empty(); ++i) {
    for (const std::uint32_t domain : leaves.domainsOf(i)) blocks[domain].push_back(i);
  }
  for (std::uint32_t domain = 0; domain < blocks.size(); ++domain) {
    if (!blocks[domain].empty())
      machines_.push_back(makeMachine(diagram.name(), leaves, blocks[domain], domain, pairs));
  }
}

MachineData::~MachineData() = default;

std::vector<std::string> MachineData::domains() const {
  std::vector<std::string> names;
  for (const auto& machine : machines_) names.push_back(machine->domain);
  return names;
}

const KMMachineData_tag* MachineData::machine(const std::string& domain) const {
  for (const auto& machine : machines_) {
    if (machine->domain == domain) return machine.get();
  }
  return nullptr;
}

PortNets netsAsPorts(const block_diagram::Diagram& diagram) {
  const FlatNetwork network(diagram);
  const LeafPorts leaves(network, {});
  PortNets result;
  for (const LeafPorts::Block& block : leaves.blocks()) result.blocks.push_back(block.block);
  std::unordered_map<std::uint32_t, std::size_t> numbers;
  for (const LeafPorts::Port& port : leaves.ports()) {
    const auto [found, isNew] = numbers.emplace(port.whole, result.nets.size());
    if (isNew) result.nets.emplace_back();
    result.nets[found->second].push_back(port.port);
  }
  return result;
}

std::vector<std::string> domainsOf(const block_diagram::Diagram& diagram,
                                   const std::vector<std::string>& fallbackDomains) {
  return LeafPorts(FlatNetwork(diagram), fallbackDomains).domains();
}

}  // namespace embedded::network_data
