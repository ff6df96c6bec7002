#include "formats/spice/write_ground.hpp"

#include "formats/spice/write_walk.hpp"

namespace kinemo::formats::spice {

namespace {

using gl::core::Component;
using gl::core::ConnectorSpec;
using gl::core::Graph;

void add_node(Ids& nodes, const Graph& level, const kmf::VnId& component, const kmf::VnId& connector) {
  if (const kmf::VnId* node = level.nodeOf(ConnectorSpec(component, connector))) {
    nodes.insert(*node);
  }
}

}  // namespace

bool is_reference(const Component& component) {
  static const std::string electrical = "physical.electrical_reference";
  return !component.isSubgraph() && std::string(component.type()) == electrical;
}

Grounds::Grounds(const Graph& top) {
  walk_levels(
      top, [](const Component*, const Graph&) {},
      [this](const Component* owner, const Graph& level) {
        if (owner == nullptr) {
          return;
        }
        Ids connectors;
        for (const kmf::VnId& node : from_inside(level)) {
          if (owner->isExported(node)) {
            connectors.insert(owner->mapExported(node));
          }
        }
        if (!connectors.empty()) {
          m_inside.emplace(owner, std::move(connectors));
        }
      });
}

const Ids& Grounds::inside(const Component& subgraph) const {
  static const Ids none;
  const auto found = m_inside.find(&subgraph);
  return found != m_inside.end() ? found->second : none;
}

Ids Grounds::from_inside(const Graph& level) const {
  Ids nodes;
  for (const auto& [id, component] : level.components()) {
    if (component.isSubgraph()) {
      for (const kmf::VnId& connector : inside(component)) {
        add_node(nodes, level, id, connector);
      }
    } else if (is_reference(component)) {
      for (const kmf::VnId& connector : component.connectorOrder()) {
        add_node(nodes, level, id, connector);
      }
    }
  }
  return nodes;
}

Ids Grounds::nodes(const Component* owner, const Graph& level, const Ids& outside) const {
  Ids nodes = from_inside(level);
  if (owner == nullptr || outside.empty()) {
    return nodes;
  }
  for (const auto& entry : level.nodes()) {
    if (owner->isExported(entry.first) && outside.count(owner->mapExported(entry.first)) != 0) {
      nodes.insert(entry.first);
    }
  }
  return nodes;
}

}  // namespace kinemo::formats::spice
