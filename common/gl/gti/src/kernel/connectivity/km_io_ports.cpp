#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"

#include "common/gl/gti/src/kernel/connectivity/io_connections.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/checked.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>

namespace gl::gti {

namespace {

constexpr std::array<port_side::Value, 2> sides{port_side::LEFT, port_side::RIGHT};

}  // namespace

KmIoPortInfo::KmIoPortInfo(KmIoPortCache& cache, double subsystem) {
  const std::vector<double> ioBlocks = findSystem(subsystem, "KMIOPort");
  if (ioBlocks.empty()) return;
  const std::map<PortLocation, double> locations = placeEntries(subsystem, readEntries(ioBlocks));
  auto reached = resolveIoConnections(cache, subsystem, locations);
  for (auto& [block, entry] : entries_) entry.connectedPorts_ = std::move(reached[block]);
  indexConnections(ioBlocks);
}

const IoPortEntry& KmIoPortInfo::port(double id) const {
  return kmf::map_at(entries_, id);
}

double KmIoPortInfo::portId(double outerHandle) const {
  return kmf::map_at(ioBlockByOuterPort_, outerHandle);
}

const std::set<double>& KmIoPortInfo::idsOf(double portHandle) const {
  static const std::set<double> none;
  const auto found = ioBlocksByPort_.find(portHandle);
  return found == ioBlocksByPort_.end() ? none : found->second;
}

const boost::unordered_set<double>& KmIoPortInfo::connectedTo(double id) const {
  static const boost::unordered_set<double> none;
  const auto found = connectedIoBlocks_.find(id);
  return found == connectedIoBlocks_.end() ? none : found->second;
}

/// Makes the entries and returns them by side, in the order of the blocks.
std::vector<KmIoPortInfo::SidePorts> KmIoPortInfo::readEntries(const std::vector<double>& ioBlocks) {
  const boost::unordered_map<double, ustring> paths = blockPathsByHandle(ioBlocks);
  const std::vector<std::string> orders = getParamStrings(ioBlocks, "Port");
  const std::vector<std::string> sideTexts = getParamStrings(ioBlocks, "Side");
  std::vector<SidePorts> bySide(sides.size());
  for (std::size_t i = 0; i < ioBlocks.size(); ++i) {
    const double block = ioBlocks[i];
    IoPortEntry& entry = entries_[block];
    entry.block_ = block;
    entry.order_ = kmf::lexical_cast<std::int64_t>(orders.at(i));
    entry.side_ = kmf::lexical_cast<port_side::Value>(sideTexts.at(i));
    entry.path_ = BlockPath(kmf::boost_unordered_map_at(paths, block));
    bySide.at(static_cast<std::size_t>(entry.side_)).emplace_back(entry.order_, block);
  }
  return bySide;
}

/// Pairs the blocks of a side with the subsystem's ports of that side: by position, so that gaps in the orders close
/// up.
std::map<PortLocation, double> KmIoPortInfo::placeEntries(double subsystem, std::vector<SidePorts> bySide) {
  const PortHandles outer = readPortHandles(subsystem);
  std::map<PortLocation, double> locations;
  for (const port_side::Value side : sides) {
    SidePorts& ports = bySide[side];
    std::stable_sort(ports.begin(), ports.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < ports.size(); ++i) {
      entries_[ports[i].second].handle_ = outer[side].at(i);
      locations.emplace(PortLocation{side, static_cast<std::int64_t>(i)}, ports[i].second);
    }
  }
  return locations;
}

void KmIoPortInfo::indexConnections(const std::vector<double>& ioBlocks) {
  const std::map<double, double> owners = portOwners(ioBlocks);
  for (const auto& [block, entry] : entries_) {
    bool allIo = true;
    boost::unordered_set<double> peers;
    for (const double port : entry.connectedPorts_) {
      ioBlocksByPort_[port].insert(block);
      const auto owner = owners.find(port);
      if (owner == owners.end()) {
        allIo = false;
      } else {
        peers.insert(owner->second);
      }
    }
    ioBlockByOuterPort_[entry.handle_] = block;
    if (allIo && !peers.empty()) wireOnlyIoBlocks_.insert(block);
    connectedIoBlocks_.emplace(block, std::move(peers));
  }
}

const KmIoPortInfo& KmIoPortCache::get(double subsystem) {
  const auto found = records_.find(subsystem);
  if (found != records_.end()) return *found->second;
  const auto made = boost::make_shared<KmIoPortInfo>(*this, subsystem);
  return *records_.emplace(subsystem, made).first->second;
}

const KmIoPortInfo& KmIoPortCache::get(const BlockPath& subsystem) {
  return get(modelHandle(subsystem.string()));
}

namespace {

struct NamedPort {
  port_side::Value side;
  std::int64_t index;
  ustring name;
};

std::vector<NamedPort> readNamedPorts(const std::vector<double>& ioBlocks) {
  const std::vector<std::string> sideTexts = getParamStrings(ioBlocks, "Side");
  const std::vector<std::string> orders = getParamStrings(ioBlocks, "Port");
  const std::vector<ustring> names = getParamUStrings(ioBlocks, "Name");
  std::vector<NamedPort> ports;
  for (std::size_t i = 0; i < ioBlocks.size(); ++i) {
    ports.push_back({kmf::lexical_cast<port_side::Value>(sideTexts.at(i)),
                     kmf::lexical_cast<std::int64_t>(orders.at(i)) - 1, names.at(i)});
  }
  std::stable_sort(ports.begin(), ports.end(), [](const auto& a, const auto& b) { return a.index < b.index; });
  return ports;
}

}  // namespace

boost::unordered_map<std::pair<port_side::Value, ustring>, double> portsByName(double subsystem) {
  const std::vector<NamedPort> ports = readNamedPorts(findSystem(subsystem, "KMIOPort"));
  const PortHandles outer = readPortHandles(subsystem);
  std::array<std::size_t, 2> counters{};
  boost::unordered_map<std::pair<port_side::Value, ustring>, double> byName;
  for (const NamedPort& port : ports) {
    const std::vector<double>& handles = outer.at(static_cast<std::size_t>(port.side));
    byName.emplace(std::make_pair(port.side, port.name), handles.at(counters[port.side]++));
  }
  return byName;
}

}  // namespace gl::gti
