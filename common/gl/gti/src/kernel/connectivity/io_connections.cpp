#include "common/gl/gti/src/kernel/connectivity/io_connections.hpp"

#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/foundation/strings.hpp"

#include <utility>

namespace gl::gti {

namespace {

constexpr port_side::Value sides[] = {port_side::LEFT, port_side::RIGHT};

}  // namespace

IoConnections::IoConnections(double subsystem, const std::map<PortLocation, double>& locations)
    : children_(findSystem(subsystem, "SubSystem")) {
  for (const auto& [location, block] : locations) ioBlocks_.push_back(block);
  std::vector<double> blocks = children_;
  blocks.insert(blocks.end(), ioBlocks_.begin(), ioBlocks_.end());
  ports_ = readPortHandles(blocks);
  if (kmf::lower(getParamString(subsystem, "Variant")) == "on") {
    joinVariantPorts();
  } else {
    joinWiredPorts(blocks);
  }
}

/// In a variant, ports of the frame and of the active choice meet by side and name. A choice may lack a port.
void IoConnections::joinVariantPorts() {
  const auto byName = portsByName(children_.at(0));
  const std::vector<ustring> names = getParamUStrings(ioBlocks_, "Name");
  const std::vector<std::string> sideTexts = getParamStrings(ioBlocks_, "Side");
  for (std::size_t i = 0; i < ioBlocks_.size(); ++i) {
    const double own = ownPort(ioPorts(i));
    nets_.makeSet(own);
    const auto side = kmf::lexical_cast<port_side::Value>(sideTexts.at(i));
    const auto found = byName.find(std::make_pair(side, names.at(i)));
    if (found == byName.end()) continue;
    nets_.makeSet(found->second);
    nets_.unite(own, found->second);
  }
}

void IoConnections::joinWiredPorts(const std::vector<double>& blocks) {
  const PortConnectivityTable connectivity = readPortConnectivity(blocks);
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const auto& peers = kmf::boost_unordered_map_at(connectivity, blocks[i]);
    for (const port_side::Value side : sides) joinPeers(ports_[i][side], side, peers);
  }
}

void IoConnections::joinPeers(const std::vector<double>& ports, port_side::Value side,
                              const boost::unordered_map<PortLocation, std::vector<double>>& peersByLocation) {
  for (const double port : ports) nets_.makeSet(port);
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const auto peers = peersByLocation.find(PortLocation{side, static_cast<std::int64_t>(i)});
    if (peers == peersByLocation.end()) continue;
    for (const double peer : peers->second) {
      nets_.makeSet(peer);
      nets_.unite(ports[i], peer);
    }
  }
}

/// Joins ports of the child that meet inside it. Ports that are only a passage are left out of the result. A choice of
/// a variant may have ports that nothing has mentioned yet.
void IoConnections::crossChild(const KmIoPortInfo& info) {
  for (const std::vector<double>& side : childPorts(crossed_++)) {
    for (const double port : side) {
      const double id = info.portId(port);
      if (info.isWireOnly(id)) excluded_.insert(port);
      for (const double joined : info.connectedTo(id)) {
        const double other = info.port(joined).handle();
        nets_.makeSet(port);
        nets_.makeSet(other);
        nets_.unite(port, other);
      }
    }
  }
}

boost::unordered_map<double, std::set<double>> IoConnections::reached() {
  const auto groupsByNet = groups();
  boost::unordered_map<double, std::set<double>> found;
  for (std::size_t i = 0; i < ioBlocks_.size(); ++i) {
    const double own = ownPort(ioPorts(i));
    std::set<double>& ports = found[ioBlocks_[i]];
    if (const double* net = nets_.findIfKnown(own)) ports = groupsByNet.at(*net);
    ports.erase(own);
  }
  return found;
}

boost::unordered_map<double, std::set<double>> IoConnections::groups() {
  boost::unordered_map<double, std::set<double>> found;
  for (const double representative : nets_.representatives()) found[representative];
  for (const double value : nets_.values()) {
    if (excluded_.count(value) != 0) continue;
    std::set<double>& group = found[nets_.find(value)];
    group.insert(group.end(), value);
  }
  return found;
}

}  // namespace gl::gti
