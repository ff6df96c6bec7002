#include "checks/check.hpp"
#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"
#include "views/error_diagnostics.hpp"
#include "views/flat_network.hpp"

#include "embedded/block_diagram/diagram.hpp"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

namespace kinemo::checks {

namespace {

/// Nets by island: two nets are in one where a component has connectors of one type on both. Merging is commutative and
/// associative; the smallest net stands for its island.
class Islands {
 public:
  explicit Islands(std::size_t nets) : parents_(nets) { std::iota(parents_.begin(), parents_.end(), std::size_t{0}); }

  std::size_t find(std::size_t net) {
    while (parents_[net] != net) {
      parents_[net] = parents_[parents_[net]];
      net = parents_[net];
    }
    return net;
  }

  void unite(std::size_t a, std::size_t b) {
    a = find(a);
    b = find(b);
    if (a != b) parents_[std::max(a, b)] = std::min(a, b);
  }

 private:
  std::vector<std::size_t> parents_;
};

bool is_reference(const gl::core::Component& component) {
  static const kmf::VnId key("Reference");
  if (!component.hasTag(key)) return false;
  const ustring* text = boost::get<ustring>(&component.tag(key));
  return text != nullptr && *text == u"on";
}

Islands unite_islands(const views::FlatNetwork& network) {
  Islands islands(network.nets.size());
  for (std::size_t c = 0; c < network.components.size(); ++c) {
    std::map<std::string, std::size_t> first_of_type;
    const std::vector<std::size_t>& nets = network.components[c].nets;
    for (std::size_t k = 0; k < nets.size(); ++k) {
      const auto [first, fresh] = first_of_type.emplace(network.connector_type({c, k}), nets[k]);
      if (!fresh) islands.unite(first->second, nets[k]);
    }
  }
  return islands;
}

struct Island {
  std::string type;
  std::vector<std::size_t> components;  ///< by block path
  bool has_reference = false;
};

std::map<std::size_t, Island> gather(const views::FlatNetwork& network) {
  Islands sets = unite_islands(network);
  std::map<std::size_t, Island> islands;
  for (std::size_t c = 0; c < network.components.size(); ++c) {
    const views::FlatComponent& component = network.components[c];
    for (std::size_t k = 0; k < component.nets.size(); ++k) {
      Island& island = islands[sets.find(component.nets[k])];
      if (island.components.empty()) island.type = network.connector_type({c, k});
      if (island.components.empty() || island.components.back() != c) island.components.push_back(c);
      island.has_reference = island.has_reference || is_reference(*component.component);
    }
  }
  return islands;
}

void tell(const Island& island, const views::FlatNetwork& network, const CheckInput& input, const Rule& rule,
          formats::DiagnosticList& findings) {
  std::vector<std::string> blocks;
  for (const std::size_t component : island.components) blocks.push_back(network.components[component].block);
  const std::string path = input.diagram.name() + "/" + blocks.front();
  const std::string text = "the " + island.type + " network of " + formats::list_names(blocks) + " has no reference";
  formats::Diagnostic& finding =
      findings.add(rule.severity, std::string(rule.id), views::place_of(path, &input.diagram, input.file), text);
  finding.notes.push_back({"in " + path, {}});
  for (const std::string& block : blocks) finding.objects.push_back({input.diagram.name() + "/" + block, {}, false});
  finding.notes.push_back({"valid: a reference block of the domain, joined to one of its nets", {}});
}

}  // namespace

void check_missing_reference(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings) {
  const views::FlatNetwork network = views::flatten(*input.model);
  for (const auto& entry : gather(network)) {
    if (!entry.second.has_reference) tell(entry.second, network, input, rule, findings);
  }
}

}  // namespace kinemo::checks
