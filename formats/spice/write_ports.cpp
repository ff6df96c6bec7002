#include "formats/spice/write_ports.hpp"

#include "formats/spice/write_walk.hpp"
#include "views/graph_access.hpp"

namespace kinemo::formats::spice {

using gl::core::Component;
using gl::core::Graph;

SubgraphPorts::SubgraphPorts(const Graph& top, const SourceNames& source) : m_source(source) {
  walk_levels(
      top, [](const Component*, const Graph&) {},
      [this](const Component* owner, const Graph& level) {
        if (owner != nullptr) {
          m_ports.emplace(owner, ports_of(*owner, level));
        }
      });
}

/// Inner levels are known by now.
SubgraphPorts::Ports SubgraphPorts::ports_of(const Component& subgraph, const Graph& inside) const {
  Ports ports;
  std::unordered_map<SourceNet, std::size_t> by_net;
  for (SourcePort& port : m_source.ports(subgraph)) {
    by_net.emplace(port.inside, ports.all.size());
    ports.all.push_back({std::move(port), {}});
  }
  for (const gl::core::Connection& connection : views::connections(inside)) {
    if (ports.all.empty() || !subgraph.isExported(connection.nodeId())) {
      continue;
    }
    const gl::core::ConnectorSpec& inner = connection.connectorSpec();
    const auto port = by_net.find(net(inside.components().at(inner.componentId()), inner.connectorId()));
    const kmf::VnId& connector = subgraph.mapExported(connection.nodeId());
    if (port != by_net.end() && ports.by_connector.emplace(connector, port->second).second) {
      ports.all[port->second].connector = connector;
    }
  }
  return ports;
}

const std::vector<SubgraphPort>& SubgraphPorts::of(const Component& subgraph) const {
  static const std::vector<SubgraphPort> none;
  const auto found = m_ports.find(&subgraph);
  return found != m_ports.end() ? found->second.all : none;
}

SourceNet SubgraphPorts::net(const Component& component, const kmf::VnId& connector) const {
  if (!component.isSubgraph()) {
    return m_source.net(component, connector);
  }
  const auto found = m_ports.find(&component);
  if (found == m_ports.end()) {
    return nullptr;
  }
  const auto port = found->second.by_connector.find(connector);
  return port != found->second.by_connector.end() ? found->second.all[port->second].source.outside : nullptr;
}

}  // namespace kinemo::formats::spice
