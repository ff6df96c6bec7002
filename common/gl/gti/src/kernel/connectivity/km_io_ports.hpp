#pragma once

// How a subsystem's physical ports are paired with the I/O port blocks inside it, and what those reach there.

#include "common/gl/gti/export/block_path.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"
#include "platform/foundation/ustring.hpp"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/unordered_map.hpp>
#include <boost/unordered_set.hpp>

#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace gl::gti {

/// One I/O port block of a subsystem.
class IoPortEntry {
 public:
  std::int64_t order() const { return order_; }  ///< sorts the ports of a side
  port_side::Value side() const { return side_; }
  double handle() const { return handle_; }      ///< the subsystem's port that the block stands for
  double block() const { return block_; }        ///< the block's own handle
  BlockPath path() const;                        ///< the block's; linear in its length
  const ustring& name() const { return name_; }  ///< of the port: the last component of `path`
  /// Ports joined to the block's own port inside the subsystem.
  const std::set<double>& connectedPorts() const { return connectedPorts_; }

 private:
  friend class IoPortReading;
  std::int64_t order_ = 0;
  port_side::Value side_ = port_side::LEFT;
  double handle_ = -1.0;
  double block_ = -1.0;
  boost::shared_ptr<const ustring> parent_;  ///< the subsystem's path, which all its entries share; never null
  ustring name_;
  std::set<double> connectedPorts_;
};

/// The I/O port blocks of one subsystem. Complete once constructed, and never changed after that. An id is the handle
/// of an I/O port block.
class KmIoPortInfo : private boost::noncopyable {
 public:
  using Entries = std::map<double, IoPortEntry>;  ///< by I/O port block

  /// Of entries that are complete, those of `ioBlocks`.
  KmIoPortInfo(const std::vector<double>& ioBlocks, Entries entries);

  /// @throws std::out_of_range for an unknown id
  const IoPortEntry& port(double id) const;
  /// The id that stands for a port of the subsystem. @throws std::out_of_range for any other port
  double portId(double outerHandle) const;
  /// The ids that a port inside is joined to; empty for an unknown port.
  const std::set<double>& idsOf(double portHandle) const;
  /// The other ids that an id is joined to; empty for an unknown id.
  const boost::unordered_set<double>& connectedTo(double id) const;
  /// Whether the id is joined to other ids and to nothing else: in here the port is just a wire.
  bool isWireOnly(double id) const { return wireOnlyIoBlocks_.count(id) != 0; }

 private:
  Entries entries_;
  std::map<double, std::set<double>> ioBlocksByPort_;
  std::map<double, double> ioBlockByOuterPort_;
  boost::unordered_map<double, boost::unordered_set<double>> connectedIoBlocks_;
  boost::unordered_set<double> wireOnlyIoBlocks_;
};

/// The records of the subsystems that a translation has asked for. Lives for one translation.
class KmIoPortCache : private boost::noncopyable {
 public:
  /// Makes the record on first use, which asks for the records of the subsystems inside. Valid as long as the cache.
  /// @throws boost::bad_lexical_cast for a "Port" that is no integer; errors of the runtime
  const KmIoPortInfo& get(double subsystem);
  const KmIoPortInfo& get(const BlockPath& subsystem);

 private:
  boost::unordered_map<double, boost::shared_ptr<KmIoPortInfo>> records_;
};

/// By side and name: the ports of a subsystem.
boost::unordered_map<std::pair<port_side::Value, ustring>, double> portsByName(double subsystem);

}  // namespace gl::gti
