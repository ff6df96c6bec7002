#include "common/gl/gti/src/kernel/connectivity/io_connections.hpp"

#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_disjoint_set.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/unordered_set.hpp>

#include <utility>
#include <vector>

namespace gl::gti {

namespace {

constexpr port_side::Value sides[] = {port_side::LEFT, port_side::RIGHT};

/// The blocks of one subsystem that matter: the subsystems inside, followed by the I/O port blocks.
struct Level {
  std::vector<double> children;
  std::vector<double> ioBlocks;
  std::vector<double> blocks;
  PortHandleTable ports;  ///< of `blocks`

  const PortHandles& childPorts(std::size_t i) const { return ports[i]; }
  const PortHandles& ioPorts(std::size_t i) const { return ports[children.size() + i]; }
};

Level readLevel(double subsystem, const std::map<PortLocation, double>& locations) {
  Level level;
  level.children = findSystem(subsystem, "SubSystem");
  for (const auto& [location, block] : locations) level.ioBlocks.push_back(block);
  level.blocks = level.children;
  level.blocks.insert(level.blocks.end(), level.ioBlocks.begin(), level.ioBlocks.end());
  level.ports = readPortHandles(level.blocks);
  return level;
}

/// In a variant, ports of the frame and of the active choice meet by side and name. A choice may lack a port.
void joinVariantPorts(const Level& level, PortDisjointSet& nets) {
  const auto byName = portsByName(level.children.at(0));
  const std::vector<ustring> names = getParamUStrings(level.ioBlocks, "Name");
  const std::vector<std::string> sideTexts = getParamStrings(level.ioBlocks, "Side");
  for (std::size_t i = 0; i < level.ioBlocks.size(); ++i) {
    const double own = ownPort(level.ioPorts(i));
    nets.makeSet(own);
    const auto side = kmf::lexical_cast<port_side::Value>(sideTexts.at(i));
    const auto found = byName.find(std::make_pair(side, names.at(i)));
    if (found == byName.end()) continue;
    nets.makeSet(found->second);
    nets.unite(own, found->second);
  }
}

void joinPeers(const std::vector<double>& ports, port_side::Value side,
               const boost::unordered_map<PortLocation, std::vector<double>>& peersByLocation, PortDisjointSet& nets) {
  for (const double port : ports) nets.makeSet(port);
  for (std::size_t i = 0; i < ports.size(); ++i) {
    const auto peers = peersByLocation.find(PortLocation{side, static_cast<std::int64_t>(i)});
    if (peers == peersByLocation.end()) continue;
    for (const double peer : peers->second) {
      nets.makeSet(peer);
      nets.unite(ports[i], peer);
    }
  }
}

void joinWiredPorts(const Level& level, PortDisjointSet& nets) {
  const PortConnectivityTable connectivity = readPortConnectivity(level.blocks);
  for (std::size_t i = 0; i < level.blocks.size(); ++i) {
    const auto& peers = kmf::boost_unordered_map_at(connectivity, level.blocks[i]);
    for (const port_side::Value side : sides) joinPeers(level.ports[i][side], side, peers, nets);
  }
}

/// Joins ports of one child that meet inside it. Ports that are only a passage are added to `excluded`. A choice of a
/// variant may have ports that nothing has mentioned yet.
void joinThroughChild(const PortHandles& ports, const KmIoPortInfo& info, PortDisjointSet& nets,
                      boost::unordered_set<double>& excluded) {
  for (const port_side::Value side : sides) {
    for (const double port : ports[side]) {
      const double id = info.portId(port);
      if (info.isWireOnly(id)) excluded.insert(port);
      for (const double joined : info.connectedTo(id)) {
        const double other = info.port(joined).handle();
        nets.makeSet(port);
        nets.makeSet(other);
        nets.unite(port, other);
      }
    }
  }
}

boost::unordered_map<double, std::set<double>> groupsOf(PortDisjointSet& nets,
                                                        const boost::unordered_set<double>& excluded) {
  boost::unordered_map<double, std::set<double>> groups;
  for (const double representative : nets.representatives()) groups[representative];
  for (const double value : nets.values()) {
    if (excluded.count(value) != 0) continue;
    std::set<double>& group = groups[nets.find(value)];
    group.insert(group.end(), value);
  }
  return groups;
}

}  // namespace

boost::unordered_map<double, std::set<double>> resolveIoConnections(KmIoPortCache& cache, double subsystem,
                                                                    const std::map<PortLocation, double>& locations) {
  const Level level = readLevel(subsystem, locations);
  PortDisjointSet nets;
  if (kmf::lower(getParamString(subsystem, "Variant")) == "on") {
    joinVariantPorts(level, nets);
  } else {
    joinWiredPorts(level, nets);
  }

  boost::unordered_set<double> excluded;
  for (std::size_t i = 0; i < level.children.size(); ++i) {
    joinThroughChild(level.childPorts(i), cache.get(level.children[i]), nets, excluded);
  }

  const auto groups = groupsOf(nets, excluded);
  boost::unordered_map<double, std::set<double>> reached;
  for (std::size_t i = 0; i < level.ioBlocks.size(); ++i) {
    const double own = ownPort(level.ioPorts(i));
    std::set<double>& ports = reached[level.ioBlocks[i]];
    if (const double* net = nets.findIfKnown(own)) ports = groups.at(*net);
    ports.erase(own);
  }
  return reached;
}

}  // namespace gl::gti
