#include "embedded/graph_core_scripting/net_pins.hpp"

#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <unordered_map>

namespace embedded::graph_core_scripting {

namespace {

using gl::core::Component;
using gl::core::ConnectorSpec;
using gl::core::Graph;
using kmf::VnId;

/// Where a net has been followed to: a node of a graph at an address, or a connector that no node holds.
struct Place {
  const Graph* graph;
  std::string prefix;  ///< of what is in the graph: "a/b/", or empty at the top
  VnId node;
};

/// Collects pins below the top-most node of a net.
class Descent {
 public:
  void from_node(const Graph& graph, const std::string& prefix, const VnId& node) {
    pending_.push_back({&graph, prefix, node});
    run();
  }
  void from_connector(const Component& component, const std::string& path, const VnId& connector) {
    reach(component, path, connector);
    run();
  }
  std::vector<Pin> pins() && {
    std::sort(pins_.begin(), pins_.end());
    return std::move(pins_);
  }

 private:
  void run() {
    while (!pending_.empty()) {
      const Place place = std::move(pending_.back());
      pending_.pop_back();
      for (const gl::core::Connection& connection : place.graph->connections(place.node)) {
        const ConnectorSpec& spec = connection.connectorSpec();
        const Component& component = place.graph->components().at(spec.componentId());
        reach(component, place.prefix + std::string(spec.componentId()), spec.connectorId());
      }
    }
  }

  void reach(const Component& component, const std::string& path, const VnId& connector) {
    if (component.isSubgraph()) {
      pending_.push_back({&component.graph(), path + '/', exported(component).at(connector)});
    } else {
      pins_.push_back({path, connector, kmf::ustring_to_utf8_string(gl::core::object(component))});
    }
  }

  using Exports = std::unordered_map<VnId, VnId>;
  /// The inner node behind each connector of a subgraph; made once for each subgraph.
  const Exports& exported(const Component& subgraph) {
    const auto [found, is_new] = exports_.try_emplace(&subgraph);
    if (is_new) {
      for (const auto& entry : subgraph.graph().nodes()) {
        if (subgraph.isExported(entry.first)) found->second.emplace(subgraph.mapExported(entry.first), entry.first);
      }
    }
    return found->second;
  }

  std::vector<Place> pending_;
  std::vector<Pin> pins_;
  std::unordered_map<const Component*, Exports> exports_;
};

VnId connector_named(const FoundComponent& found, const std::string& port) {
  const std::vector<VnId>& order = found.component().connectorOrder();
  const auto same = [&](const VnId& id) { return id.view() == port; };
  const auto known = std::find_if(order.begin(), order.end(), same);
  if (known != order.end()) return *known;
  throw_with_nearest(kmf::MessageException(kmf::Message(
                         kmf::MessageId("kinemo:graph:scripting", "NoSuchPort", port, address_text(found.address)))),
                     port, std::vector<std::string>(order.begin(), order.end()));
}

std::string path_to(const kmf::VnIdPath& address, std::size_t count) {
  return address_text(
      kmf::VnIdPath(std::vector<VnId>(address.begin(), address.begin() + static_cast<std::ptrdiff_t>(count))));
}

}  // namespace

std::vector<Pin> net_pins(const FoundComponent& component, const std::string& port) {
  VnId connector = connector_named(component, port);
  Descent descent;
  for (std::size_t level = component.address.size() - 1;; --level) {
    const Graph& graph = *component.graphs[level];
    const VnId* node = graph.nodeOf(ConnectorSpec(component.address[level], connector));
    if (node == nullptr) {
      descent.from_connector(*component.components[level], path_to(component.address, level + 1), connector);
      break;
    }
    const Component* around = level > 0 ? component.components[level - 1] : nullptr;
    if (around == nullptr || !around->isExported(*node)) {
      descent.from_node(graph, level > 0 ? path_to(component.address, level) + '/' : std::string(), *node);
      break;
    }
    connector = around->mapExported(*node);
  }
  return std::move(descent).pins();
}

}  // namespace embedded::graph_core_scripting
