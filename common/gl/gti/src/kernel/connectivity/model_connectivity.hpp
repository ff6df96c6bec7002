#pragma once

// A snapshot of which ports of which blocks the host says are joined: plain numbers and texts, with no pointer into the
// host. The translation manager makes one for the length of one `addConnectivity` call.

#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"
#include "platform/foundation/ustring.hpp"

#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

class GTBlock;
class gtPort;
struct Connection_tag;
struct KMMachineData_tag;

namespace gl::gti {

/// One end of a connection.
struct ConnectionEnd {
  double blockHandle = -1.0;  ///< owner of the port; -1.0 while unresolved
  double portHandle = -1.0;
  port_side::Value side = port_side::LEFT;
  std::int64_t index = 0;  ///< the host's port index, for diagnostics
};

/// One directed connection. Each physical one is present twice, once under either owner.
struct BlockConnection {
  ConnectionEnd source;  ///< the end on the block under which the record is filed
  ConnectionEnd destination;
};

class ModelConnectivity {
 public:
  using Nets = std::vector<std::vector<std::vector<gtPort*>>>;

  /// From the host's machine data.
  /// @throws kmf::MessageException "kinemo:common:gl:gti:connectivity" "DuplicateBlockHandles" (handle),
  /// "InvalidBlockName" (block, model) for a block whose path isn't rooted in the model
  explicit ModelConnectivity(const KMMachineData_tag* machine);
  /// From groups of nets of ports, and blocks that must be known even though no net touches them. A net of n ports
  /// gives n * (n - 1) records.
  ModelConnectivity(std::string modelName, const Nets& nets, const std::vector<GTBlock*>& blocks);

  const std::string& modelName() const { return modelName_; }
  /// All blocks, ascending.
  const std::set<double>& blockHandles() const { return blockHandles_; }
  /// Full path of a known block.
  const ustring& blockName(double blockHandle) const;
  /// The connections of a block in the order of extraction. The first call resolves all far ends.
  /// @throws std::out_of_range "invalid unordered_map<K, T> key" for an unknown block or a far port that is nobody's
  /// own
  const std::vector<BlockConnection>& connections(double blockHandle);

 private:
  /// `root` is the model's name as paths begin with it.
  void addBlock(const ustring& root, double handle, ustring name, std::vector<BlockConnection> records);
  void addNet(const std::vector<gtPort*>& ports, std::vector<ConnectionEnd>& ends);
  void addNamedBlock(double handle, const GTBlock* block);
  void resolveDestinations();

  std::string modelName_;
  std::unordered_map<double, ustring> blockNames_;
  std::set<double> blockHandles_;
  std::unordered_map<double, std::vector<BlockConnection>> connectionsByBlock_;
  bool destinationsDirty_ = false;
};

}  // namespace gl::gti
