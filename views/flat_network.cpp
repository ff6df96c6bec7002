#include "views/flat_network.hpp"

#include "views/block_ports.hpp"
#include "views/graph_access.hpp"

#include <algorithm>
#include <unordered_map>

namespace kinemo::views {

namespace {

using NetById = std::unordered_map<kmf::VnId, std::size_t>;

/// A graph that is still to be walked, and what its exported nodes belong to.
struct Level {
  const gl::core::Graph* graph;
  const gl::core::Component* owner;  ///< null at the root
  NetById outer;                     ///< nets by the owner's connectors
};

class Flattener {
 public:
  FlatNetwork run(const gl::core::Graph& root) {
    pending_.push_back({&root, nullptr, {}});
    while (!pending_.empty()) {
      const Level level = std::move(pending_.back());
      pending_.pop_back();
      walk(level);
    }
    return finish();
  }

 private:
  std::size_t new_net() { return net_count_++; }

  NetById nets_of_nodes(const Level& level) {
    NetById nets;
    for (const auto& entry : level.graph->nodes()) {
      const kmf::VnId& id = entry.first;
      const bool exported = level.owner != nullptr && level.owner->isExported(id);
      const auto outer = exported ? level.outer.find(level.owner->mapExported(id)) : level.outer.end();
      nets.emplace(id, outer != level.outer.end() ? outer->second : new_net());
    }
    return nets;
  }

  /// The net of each connector, in the component's order. One that is tied to no node is a net of its own.
  std::vector<std::size_t> nets_of_connectors(const Level& level, const NetById& nodes, const kmf::VnId& id,
                                              const gl::core::Component& component) {
    std::vector<std::size_t> nets;
    nets.reserve(component.connectorOrder().size());
    for (const kmf::VnId& connector : component.connectorOrder()) {
      const kmf::VnId* node = level.graph->nodeOf(gl::core::ConnectorSpec(id, connector));
      nets.push_back(node != nullptr ? nodes.at(*node) : new_net());
    }
    return nets;
  }

  void walk(const Level& level) {
    const NetById nodes = nets_of_nodes(level);
    for (const auto& [id, component] : level.graph->components()) {
      std::vector<std::size_t> nets = nets_of_connectors(level, nodes, id, component);
      if (!component.isSubgraph()) {
        network_.components.push_back({relative_path(gl::core::object(component)), &component, std::move(nets)});
        continue;
      }
      NetById outer;
      for (std::size_t i = 0; i < nets.size(); ++i) outer.emplace(component.connectorOrder()[i], nets[i]);
      pending_.push_back({&component.graph(), &component, std::move(outer)});
    }
  }

  FlatNetwork finish() {
    std::sort(network_.components.begin(), network_.components.end(),
              [](const FlatComponent& a, const FlatComponent& b) { return a.block < b.block; });
    std::vector<std::vector<FlatPin>> nets(net_count_);
    for (std::size_t c = 0; c < network_.components.size(); ++c) {
      const std::vector<std::size_t>& of_component = network_.components[c].nets;
      for (std::size_t k = 0; k < of_component.size(); ++k) nets[of_component[k]].push_back({c, k});
    }
    return renumber(std::move(nets));
  }

  /// Nets in the order of their first pins, so that the numbers don't depend on the order of the walk. A net without
  /// pins joins nothing and goes away.
  FlatNetwork renumber(std::vector<std::vector<FlatPin>> nets) {
    std::vector<std::size_t> number(nets.size(), nets.size());
    for (FlatComponent& component : network_.components) {
      for (std::size_t& net : component.nets) {
        if (number[net] == nets.size()) {
          number[net] = network_.nets.size();
          network_.nets.push_back(std::move(nets[net]));
        }
        net = number[net];
      }
    }
    return std::move(network_);
  }

  FlatNetwork network_;
  std::vector<Level> pending_;
  std::size_t net_count_ = 0;
};

}  // namespace

const kmf::VnId& FlatNetwork::connector_id(const FlatPin& pin) const {
  return components[pin.component].component->connectorOrder()[pin.connector];
}

std::string FlatNetwork::connector_type(const FlatPin& pin) const {
  return views::connector_type(*components[pin.component].component, connector_id(pin));
}

FlatNetwork flatten(const gl::core::Model& model) {
  return Flattener().run(model.graph());
}

}  // namespace kinemo::views
