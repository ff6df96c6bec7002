#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"

#include "common/gl/gti/src/kernel/block_model/path_text.hpp"
#include "common/gl/gti/src/kernel/connectivity/io_connections.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/checked.hpp"

#include <boost/make_shared.hpp>
#include <boost/optional.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <string>

namespace gl::gti {

namespace {

constexpr std::array<port_side::Value, 2> sides{port_side::LEFT, port_side::RIGHT};

}  // namespace

BlockPath IoPortEntry::path() const {
  return parent_->empty() ? BlockPath(name_) : BlockPath(*parent_ + u'/' + name_);
}

KmIoPortInfo::KmIoPortInfo(const std::vector<double>& ioBlocks, Entries entries) : entries_(std::move(entries)) {
  if (ioBlocks.empty()) return;
  const std::map<double, double> owners = portOwners(ioBlocks);
  for (const auto& [block, entry] : entries_) {
    bool allIo = true;
    boost::unordered_set<double> peers;
    for (const double port : entry.connectedPorts()) {
      ioBlocksByPort_[port].insert(block);
      const auto owner = owners.find(port);
      if (owner == owners.end()) {
        allIo = false;
      } else {
        peers.insert(owner->second);
      }
    }
    ioBlockByOuterPort_[entry.handle()] = block;
    if (allIo && !peers.empty()) wireOnlyIoBlocks_.insert(block);
    connectedIoBlocks_.emplace(block, std::move(peers));
  }
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

/// The making of one record, step by step: up to the subsystems inside; each of these; and the end. Nothing more is
/// read for a subsystem without I/O port blocks.
class IoPortReading : private boost::noncopyable {
 public:
  explicit IoPortReading(double subsystem) : subsystem_(subsystem), ioBlocks_(findSystem(subsystem, "KMIOPort")) {
    if (ioBlocks_.empty()) return;
    const PortHandles outer = readPortHandles(subsystem);
    connections_.emplace(subsystem, placeEntries(outer, readEntries()));
  }

  double subsystem() const { return subsystem_; }
  /// The subsystem inside whose record is needed next; null when there is none.
  const double* nextChild() const { return connections_ ? connections_->nextChild() : nullptr; }
  void crossChild(const KmIoPortInfo& child) { connections_->crossChild(child); }

  boost::shared_ptr<KmIoPortInfo> finish() {
    if (connections_) {
      auto reached = connections_->reached();
      for (auto& [block, entry] : entries_) entry.connectedPorts_ = std::move(reached[block]);
    }
    return boost::make_shared<KmIoPortInfo>(ioBlocks_, std::move(entries_));
  }

 private:
  using SidePorts = std::vector<std::pair<std::int64_t, double>>;  ///< order and block

  /// Makes the entries and returns them by side, in the order of the blocks.
  std::array<SidePorts, 2> readEntries() {
    const boost::unordered_map<double, ustring> paths = blockPathsByHandle(ioBlocks_);
    const std::vector<std::string> orders = getParamStrings(ioBlocks_, "Port");
    const std::vector<std::string> sideTexts = getParamStrings(ioBlocks_, "Side");
    std::array<SidePorts, 2> bySide;
    for (std::size_t i = 0; i < ioBlocks_.size(); ++i) {
      const double block = ioBlocks_[i];
      IoPortEntry& entry = entries_[block];
      entry.block_ = block;
      entry.order_ = kmf::lexical_cast<std::int64_t>(orders.at(i));
      entry.side_ = kmf::lexical_cast<port_side::Value>(sideTexts.at(i));
      setPath(entry, kmf::boost_unordered_map_at(paths, block));
      bySide.at(static_cast<std::size_t>(entry.side_)).emplace_back(entry.order_, block);
    }
    return bySide;
  }

  void setPath(IoPortEntry& entry, const ustring& path) {
    const auto [parent, name] = split_last(path);
    if (!parent_ || *parent_ != parent) parent_ = boost::make_shared<ustring>(parent);
    entry.parent_ = parent_;
    entry.name_ = name;
  }

  /// Pairs the blocks of a side with the subsystem's ports of that side: by position, so that gaps in the orders close
  /// up.
  std::map<PortLocation, double> placeEntries(const PortHandles& outer, std::array<SidePorts, 2> bySide) {
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

  double subsystem_;
  std::vector<double> ioBlocks_;
  KmIoPortInfo::Entries entries_;
  boost::shared_ptr<const ustring> parent_;
  boost::optional<IoConnections> connections_;
};

const KmIoPortInfo& KmIoPortCache::get(double subsystem) {
  const auto known = records_.find(subsystem);
  if (known != records_.end()) return *known->second;
  std::vector<std::unique_ptr<IoPortReading>> readings;  // each waits for the record of the next
  readings.push_back(std::make_unique<IoPortReading>(subsystem));
  for (;;) {
    IoPortReading& reading = *readings.back();
    if (const double* child = reading.nextChild()) {
      const auto found = records_.find(*child);
      if (found == records_.end()) {
        readings.push_back(std::make_unique<IoPortReading>(*child));
      } else {
        reading.crossChild(*found->second);
      }
      continue;
    }
    const KmIoPortInfo& made = *records_.emplace(reading.subsystem(), reading.finish()).first->second;
    readings.pop_back();
    if (readings.empty()) return made;
    readings.back()->crossChild(made);
  }
}

const KmIoPortInfo& KmIoPortCache::get(const BlockPath& subsystem) {
  return get(modelHandle(subsystem.string()));
}

namespace {

struct NamedPort {
  port_side::Value side;
  std::int64_t order;
  ustring name;
};

std::vector<NamedPort> readNamedPorts(const std::vector<double>& ioBlocks) {
  const std::vector<std::string> sideTexts = getParamStrings(ioBlocks, "Side");
  const std::vector<std::string> orders = getParamStrings(ioBlocks, "Port");
  const std::vector<ustring> names = getParamUStrings(ioBlocks, "Name");
  std::vector<NamedPort> ports;
  for (std::size_t i = 0; i < ioBlocks.size(); ++i) {
    ports.push_back({kmf::lexical_cast<port_side::Value>(sideTexts.at(i)),
                     kmf::lexical_cast<std::int64_t>(orders.at(i)), names.at(i)});
  }
  std::stable_sort(ports.begin(), ports.end(), [](const auto& a, const auto& b) { return a.order < b.order; });
  return ports;
}

}  // namespace

boost::unordered_map<std::pair<port_side::Value, ustring>, double> portsByName(double subsystem) {
  std::map<port_side::Value, std::vector<ustring>> names;  // by position
  for (NamedPort& port : readNamedPorts(findSystem(subsystem, "KMIOPort"))) {
    names[port.side].push_back(std::move(port.name));
  }
  const PortHandles outer = readPortHandles(subsystem);
  boost::unordered_map<std::pair<port_side::Value, ustring>, double> byName;
  for (const port_side::Value side : sides) {
    for (std::size_t i = 0; i < outer[side].size(); ++i) {
      byName.emplace(std::make_pair(side, names[side].at(i)), outer[side][i]);
    }
  }
  return byName;
}

}  // namespace gl::gti
