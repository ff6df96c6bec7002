#pragma once

#include "common/gl/gti/src/kernel/connectivity/port_disjoint_set.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"

#include <boost/unordered_map.hpp>
#include <boost/unordered_set.hpp>

#include <cstddef>
#include <map>
#include <set>
#include <vector>

namespace gl::gti {

class KmIoPortInfo;

/// Finds which ports of a subsystem's own level each of its I/O port blocks reaches, through wires and through the
/// subsystems inside. A port of an inner subsystem that is only a passage is left out.
///
/// The subsystems inside are crossed one by one, with records that the owner gets; it makes those that it doesn't have
/// in between. So the call stack stays flat however deep systems are nested. Lives for the making of one record.
class IoConnections {
 public:
  /// `locations` leads from a place on the subsystem's icon to its I/O port block.
  IoConnections(double subsystem, const std::map<PortLocation, double>& locations);

  /// The subsystem inside that is to be crossed next; null when all are.
  const double* nextChild() const { return crossed_ < children_.size() ? &children_[crossed_] : nullptr; }
  /// Crosses it, by its record.
  void crossChild(const KmIoPortInfo& info);
  /// By I/O port block. Once all subsystems are crossed.
  boost::unordered_map<double, std::set<double>> reached();

 private:
  const PortHandles& childPorts(std::size_t i) const { return ports_[i]; }
  const PortHandles& ioPorts(std::size_t i) const { return ports_[children_.size() + i]; }
  void joinVariantPorts();
  void joinWiredPorts(const std::vector<double>& blocks);
  void joinPeers(const std::vector<double>& ports, port_side::Value side,
                 const boost::unordered_map<PortLocation, std::vector<double>>& peersByLocation);
  boost::unordered_map<double, std::set<double>> groups();

  std::vector<double> children_;
  std::vector<double> ioBlocks_;
  PortHandleTable ports_;  ///< of the children, followed by the I/O port blocks
  PortDisjointSet nets_;
  boost::unordered_set<double> excluded_;
  std::size_t crossed_ = 0;  ///< number of children
};

}  // namespace gl::gti
