#include "views/net_names.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/host_nets.hpp"

#include <tuple>
#include <unordered_map>
#include <unordered_set>

namespace kinemo::views {

namespace host = embedded::block_diagram;

namespace {

using PortsById = std::unordered_map<std::string, gtPort*>;

const GTBlock* block_of(const FlatComponent& component, const host::Diagram& diagram) {
  return diagram.findBlock(kmf::utf8_string_to_ustring(component.block));
}

/// The ports of a block by the identifiers that its component's connectors have.
PortsById ports_by_id(const GTBlock& block) {
  PortsById ports;
  for (gtPort* port : host::ports(block)) {
    const std::string name = port_name(*port);
    ports.emplace(name, port);
    ports.emplace(kmf::VnId::make(name), port);
  }
  return ports;
}

/// How good a name is: few levels down, then first in the order of texts.
using Rank = std::tuple<std::size_t, std::string>;

class BestName {
 public:
  void offer(const host::Line& line, const gtPort& port) {
    if (line.name.empty()) return;
    const host::System& system = host::parentSystem(*port.getGrOwnerBlock());
    std::size_t depth = 0;
    for (const GTBlock* owner = system.owner(); owner != nullptr; owner = host::parentSystem(*owner).owner()) ++depth;
    if (found_ && depth > std::get<0>(best_)) return;
    std::string name = system.owner() != nullptr ? relative_path(*system.owner()) + "/" : std::string();
    name += kmf::ustring_to_utf8_string(line.name);
    const Rank rank{depth, std::move(name)};
    if (!found_ || rank < best_) best_ = rank;
    found_ = true;
  }

  const std::string& name() const { return std::get<1>(best_); }

 private:
  bool found_ = false;
  Rank best_{0, {}};
};

std::string line_name(HostNets& nets, const std::vector<FlatPin>& net, const HostPorts& ports) {
  BestName best;
  for (const FlatPin& pin : net) {
    gtPort* start = ports[pin.component][pin.connector];
    if (start == nullptr) continue;
    nets.follow(*start, [&](const gtPort& port) {
      for (const host::Line* line : host::linesAt(port)) best.offer(*line, port);
    });
  }
  return best.name();
}

/// Puts a number behind names that are taken; the first net with a name keeps it.
void make_unique(std::vector<std::string>& names) {
  std::unordered_set<std::string> taken(names.begin(), names.end());
  std::unordered_set<std::string> used;
  std::unordered_map<std::string, std::size_t> next;
  for (std::string& name : names) {
    if (used.insert(name).second) continue;
    const std::string base = name;
    std::size_t& number = next.try_emplace(base, 2).first->second;
    do {
      name = base + "_" + std::to_string(number++);
    } while (!taken.insert(name).second);
    used.insert(name);
  }
}

}  // namespace

HostPorts host_ports(const FlatNetwork& network, const host::Diagram& diagram) {
  HostPorts all(network.components.size());
  for (std::size_t c = 0; c < all.size(); ++c) {
    const FlatComponent& component = network.components[c];
    const GTBlock* block = block_of(component, diagram);
    const PortsById ports = block != nullptr ? ports_by_id(*block) : PortsById();
    for (const kmf::VnId& connector : component.component->connectorOrder()) {
      const auto found = ports.find(connector);
      all[c].push_back(found != ports.end() ? found->second : nullptr);
    }
  }
  return all;
}

std::string pin_name(const FlatNetwork& network, const HostPorts& ports, const FlatPin& pin) {
  const gtPort* port = ports[pin.component][pin.connector];
  std::string name = port != nullptr ? port_name(*port) : std::string();
  return name.empty() ? std::string(network.connector_id(pin)) : name;
}

std::vector<std::string> name_nets(const FlatNetwork& network, const HostPorts& ports) {
  HostNets nets;
  std::vector<std::string> names;
  names.reserve(network.nets.size());
  for (const std::vector<FlatPin>& net : network.nets) {
    std::string name = line_name(nets, net, ports);
    if (name.empty()) {
      const FlatPin& first = net.front();
      name = network.components[first.component].block + "." + pin_name(network, ports, first);
    }
    names.push_back(std::move(name));
  }
  make_unique(names);
  return names;
}

}  // namespace kinemo::views
