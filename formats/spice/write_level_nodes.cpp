#include <algorithm>
#include <set>
#include <tuple>

#include "formats/spice/write_level.hpp"
#include "platform/foundation/strings.hpp"
#include "views/graph_access.hpp"

namespace kinemo::formats::spice {

using gl::core::Component;
using gl::core::ConnectorSpec;
using gl::core::Graph;

LevelNodes::LevelNodes(const Component* owner, const Graph& level, const Ids& outside,
                       const std::vector<OpenPort>& open, const Grounds& grounds, const SubgraphPorts& ports,
                       const SourceNames& source)
    : m_owner(owner),
      m_graph(level),
      m_grounds(grounds),
      m_ports(ports),
      m_source(source),
      m_grounded(grounds.nodes(owner, level, outside)) {
  m_taken.claim("0");
  m_taken.claim("gnd");
  collect_nodes();
  collect_connectors();
  collect_open_ports();
  collect_inner_ends(open);
  name_points();
  if (owner != nullptr) {
    add_formals(open);
  }
}

// --- what there is to be named

void LevelNodes::touch(Point& point, const kmf::VnId& component, const kmf::VnId& connector) const {
  const Component& touched = m_graph.components().at(component);
  point.is_touched = true;
  if (touched.isSubgraph()) {
    point.calls.push_back(component);
  }
  const SourceNet net = m_ports.net(touched, connector);
  if (net != nullptr && std::find(point.nets.begin(), point.nets.end(), net) == point.nets.end()) {
    point.nets.push_back(net);
  }
}

void LevelNodes::collect_nodes() {
  for (const auto& entry : m_graph.nodes()) {
    m_of_node.emplace(entry.first, m_points.size());
    m_points.emplace_back().node = entry.first;
    m_points.back().fallback = std::string(entry.first);
  }
  for (const gl::core::Connection& connection : views::connections(m_graph)) {
    const ConnectorSpec& connector = connection.connectorSpec();
    touch(m_points[m_of_node.at(connection.nodeId())], connector.componentId(), connector.connectorId());
  }
  for (std::size_t i = 0; i < m_points.size(); ++i) {
    for (const SourceNet net : m_points[i].nets) {
      m_of_net.emplace(net, i);
    }
  }
}

void LevelNodes::collect_connectors() {
  for (const auto& [id, component] : m_graph.components()) {
    for (const kmf::VnId& connector : component.connectorOrder()) {
      if (m_graph.nodeOf(ConnectorSpec(id, connector)) != nullptr) {
        continue;
      }
      const std::size_t index = m_points.size();
      Point& point = m_points.emplace_back();
      point.fallback = std::string(id) + "_" + std::string(connector);
      touch(point, id, connector);
      m_of_connector.emplace(Spec(id, connector), index);
      for (const SourceNet net : point.nets) {
        m_of_net.emplace(net, index);
      }
    }
  }
}

void LevelNodes::collect_open_ports() {
  for (const auto& [id, component] : m_graph.components()) {
    if (!component.isSubgraph()) {
      continue;
    }
    for (const auto& [port, connector] : m_ports.of(component)) {
      if (port.inside == nullptr || port.outside == nullptr || !connector.empty()) {
        continue;
      }
      const std::size_t index = m_of_net.emplace(port.outside, m_points.size()).first->second;
      if (index == m_points.size()) {
        m_points.emplace_back().nets.push_back(port.outside);
        m_points.back().fallback = std::string(id) + "_" + port.name;
      }
      m_points[index].calls.push_back(id);
      m_open_ports[id].emplace_back(port.inside, index);
    }
  }
}

/// The owner's open ports that nothing here is at.
void LevelNodes::collect_inner_ends(const std::vector<OpenPort>& open) {
  for (const OpenPort& port : open) {
    if (m_of_net.emplace(port.inside, m_points.size()).second) {
      m_points.emplace_back().nets.push_back(port.inside);
      m_points.back().fallback = "open";
    }
  }
}

// --- names

/// `call.node` is the simulator's name for a node inside of a call, so that another node can't have it.
void LevelNodes::find_names(Point& point, const std::map<std::string, kmf::VnId>& calls) const {
  std::vector<std::tuple<std::size_t, std::size_t, std::string>> ranked;
  for (const SourceNet net : point.nets) {
    const SourceNetNames names = m_source.names(net);
    for (std::size_t i = 0; i < names.names.size(); ++i) {
      ranked.emplace_back(names.depth, i, names.names[i]);
    }
  }
  std::sort(ranked.begin(), ranked.end());
  for (const auto& [depth, rank, wanted] : ranked) {
    std::string name = legal_name(wanted);
    const auto call = calls.find(kmf::lower(name.substr(0, name.find('.'))));
    const bool clashes = name.find('.') != std::string::npos && call != calls.end() &&
                         std::find(point.calls.begin(), point.calls.end(), call->second) == point.calls.end();
    if (clashes) {
      std::replace(name.begin(), name.end(), '.', '_');
    }
    if (!name.empty()) {
      point.names.push_back(std::move(name));
    }
  }
}

/// A node that is ground around its definition only is a formal node, unless its name says that it is always ground.
bool LevelNodes::is_always_ground(const Point& point) const {
  if (m_grounded.count(point.node) == 0) {
    return false;
  }
  return m_owner == nullptr || !m_owner->isExported(point.node) ||
         m_grounds.inside(*m_owner).count(m_owner->mapExported(point.node)) != 0 ||
         (!point.names.empty() && names_ground(point.names.front()));
}

/// Takes the first of the names that is free.
bool LevelNodes::claim(Point& point, std::size_t most_names) {
  for (std::size_t i = 0; i < std::min(most_names, point.names.size()); ++i) {
    if (m_taken.claim(point.names[i])) {
      point.name = point.names[i];
      return true;
    }
  }
  return false;
}

/// Best names of all nodes first, then any name, at last made ones.
void LevelNodes::name_points() {
  std::map<std::string, kmf::VnId> calls;
  for (const auto& [id, component] : m_graph.components()) {
    if (component.isSubgraph()) {
      calls.emplace(kmf::lower(block_name(component)), id);
    }
  }
  for (Point& point : m_points) {
    find_names(point, calls);
    if (is_always_ground(point)) {
      point.name = "0";
    }
  }
  for (const std::size_t most_names : {std::size_t{1}, std::string::npos}) {
    for (Point& point : m_points) {
      if (point.name.empty()) {
        claim(point, most_names);
      }
    }
  }
  for (Point& point : m_points) {
    if (point.name.empty()) {
      const bool has_name = !point.names.empty() && !names_ground(point.names.front());
      point.name = m_taken.make(has_name ? point.names.front() : point.fallback);
    }
  }
  add_aliases();
}

/// A node's best name belongs to it, whatever else is said of that name.
void LevelNodes::add_aliases() {
  for (const Point& point : m_points) {
    if (!point.names.empty()) {
      m_aliases.add(point.names.front(), point.name);
    }
  }
  for (const Point& point : m_points) {
    for (const std::string& name : point.names) {
      m_aliases.add(name, point.name);
    }
  }
}

// --- answers

const std::string& LevelNodes::at(const kmf::VnId& component, const kmf::VnId& connector) const {
  const kmf::VnId* node = m_graph.nodeOf(ConnectorSpec(component, connector));
  return m_points[node != nullptr ? m_of_node.at(*node) : m_of_connector.at({component, connector})].name;
}

/// What the graph keeps apart stays so, whatever the drawing says.
const LevelNodes::Point* LevelNodes::open_point(const OpenPort& port) const {
  const Point& point = m_points[m_of_net.at(port.inside)];
  return point.is_touched && port.joins_outside ? nullptr : &point;
}

/// In the order of the subsystem's ports, so that calls which leave some of them open can share a definition.
void LevelNodes::add_formals(const std::vector<OpenPort>& open) {
  std::map<kmf::VnId, std::string> exported;
  for (const auto& entry : m_graph.nodes()) {
    if (m_owner->isExported(entry.first)) {
      exported.emplace(m_owner->mapExported(entry.first), m_points[m_of_node.at(entry.first)].name);
    }
  }
  std::set<std::string> told{"0"};
  const auto add = [&](const std::string& name, const kmf::VnId& connector, const std::string& actual) {
    if (told.insert(name).second) {
      m_formals.push_back({name, connector, actual});
    }
  };
  std::unordered_map<SourceNet, const OpenPort*> by_net;
  for (const OpenPort& port : open) {
    by_net.emplace(port.inside, &port);
  }
  for (const auto& [port, connector] : m_ports.of(*m_owner)) {
    const auto by_connector = exported.find(connector);
    const auto known = by_net.find(port.inside);
    if (by_connector != exported.end()) {
      add(by_connector->second, connector, {});
    } else if (const Point* point = known != by_net.end() ? open_point(*known->second) : nullptr) {
      add(point->name, {}, known->second->actual);
    }
  }
  for (const kmf::VnId& connector : m_owner->connectorOrder()) {
    const auto found = exported.find(connector);
    add(found != exported.end() ? found->second : make(std::string(connector)), connector, {});
  }
}

Ids LevelNodes::grounded_connectors(const kmf::VnId& component, const Component& subgraph) const {
  Ids connectors;
  for (const kmf::VnId& connector : subgraph.connectorOrder()) {
    const kmf::VnId* node = m_graph.nodeOf(ConnectorSpec(component, connector));
    if (node != nullptr && m_grounded.count(*node) != 0) {
      connectors.insert(connector);
    }
  }
  return connectors;
}

std::vector<OpenPort> LevelNodes::open_ports(const kmf::VnId& subgraph) const {
  std::vector<OpenPort> result;
  const auto found = m_open_ports.find(subgraph);
  if (found != m_open_ports.end()) {
    for (const auto& [inside, point] : found->second) {
      result.push_back({inside, m_points[point].name, m_points[point].is_touched});
    }
  }
  return result;
}

}  // namespace kinemo::formats::spice
