#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"

#include "common/gl/gti/src/kernel/block_model/path_text.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/network_data/network_data.hpp"

#include <utility>

namespace gl::gti {

namespace {

constexpr const char* messageGroup = "kinemo:common:gl:gti:connectivity";
constexpr double noHandle = -1.0;

ConnectionEnd readEnd(const Connection_tag* connection, kmPortOrient orientation) {
  ConnectionEnd end;
  end.portHandle = kmGetPortHandle(connection, orientation);
  end.index = kmGetPortIndex(connection, orientation);
  end.side = kmGetPortSide(connection, orientation) == KM_SIDE_RIGHT ? port_side::RIGHT : port_side::LEFT;
  return end;
}

/// The connections behind the head of a block's chain. A port that is joined to nothing has no handle there.
std::vector<BlockConnection> readChain(const Connection_tag* head) {
  std::vector<BlockConnection> records;
  for (auto* at = kmGetConnectionNextConnection(head); at != nullptr; at = kmGetConnectionNextConnection(at)) {
    if (kmGetPortHandle(at, KM_PORT_NEAR) == noHandle) continue;
    records.push_back({readEnd(at, KM_PORT_NEAR), readEnd(at, KM_PORT_FAR)});
  }
  return records;
}

ConnectionEnd endAt(const gtPort* port) {
  ConnectionEnd end;
  end.portHandle = gp_handle(port);
  end.blockHandle = port->getGrOwnerBlock()->getHandle();
  end.side = gtpatch::getPortKind(port) == gtpatch::portenum::LEFT_CONNECTION ? port_side::LEFT : port_side::RIGHT;
  end.index = port->index;
  return end;
}

}  // namespace

ModelConnectivity::ModelConnectivity(const KMMachineData_tag* machine) : modelName_(kmGetMachineRootBDName(machine)) {
  const ustring root = kmf::utf8_string_to_ustring(modelName_);
  for (auto* item = kmGetMachineDataList(machine); item != nullptr; item = kmGetListItemNextItem(item)) {
    const Connection_tag* head = kmGetListItemConnection(item);
    const double handle = kmGetBlockHandle(head);
    ustring name = kmGetBlockFullName(head);
    addBlock(root, handle, std::move(name), readChain(head));
  }
}

ModelConnectivity::ModelConnectivity(std::string modelName, const Nets& nets, const std::vector<GTBlock*>& blocks)
    : modelName_(std::move(modelName)) {
  std::vector<ConnectionEnd> ends;
  for (const auto& group : nets) {
    for (const auto& net : group) addNet(net, ends);
  }
  for (const auto& [handle, records] : connectionsByBlock_) addNamedBlock(handle, GTBlock::Handle2Block(handle));
  for (const GTBlock* block : blocks) {
    const double handle = block->getHandle();
    connectionsByBlock_.try_emplace(handle);
    addNamedBlock(handle, block);
  }
}

const ustring& ModelConnectivity::blockName(double blockHandle) const {
  return kmf::unordered_map_at(blockNames_, blockHandle);
}

const std::vector<BlockConnection>& ModelConnectivity::connections(double blockHandle) {
  if (destinationsDirty_) resolveDestinations();
  return kmf::unordered_map_at(connectionsByBlock_, blockHandle);
}

void ModelConnectivity::addBlock(const ustring& root, double handle, ustring name,
                                 std::vector<BlockConnection> records) {
  if (blockHandles_.count(handle) != 0) {
    kmf::throw_message(messageGroup, "DuplicateBlockHandles", boost::lexical_cast<std::string>(handle));
  }
  if (front_text(name) != root) kmf::throw_message(messageGroup, "InvalidBlockName", name, root);

  for (BlockConnection& record : records) record.source.blockHandle = handle;
  blockNames_.emplace(handle, std::move(name));
  blockHandles_.insert(handle);
  connectionsByBlock_.emplace(handle, std::move(records));
  destinationsDirty_ = true;
}

void ModelConnectivity::addNet(const std::vector<gtPort*>& ports, std::vector<ConnectionEnd>& ends) {
  ends.clear();
  for (const gtPort* port : ports) ends.push_back(endAt(port));
  for (std::size_t i = 0; i < ends.size(); ++i) {
    std::vector<BlockConnection>& records = connectionsByBlock_[ends[i].blockHandle];
    for (std::size_t j = 0; j < ends.size(); ++j) {
      if (j != i) records.push_back({ends[i], ends[j]});
    }
  }
}

void ModelConnectivity::addNamedBlock(double handle, const GTBlock* block) {
  blockHandles_.insert(handle);
  if (blockNames_.count(handle) != 0) return;
  blockNames_.emplace(handle, block->platformInfo().getGrFullPathNameUnicode(false));
}

void ModelConnectivity::resolveDestinations() {
  std::unordered_map<double, double> owners;
  for (const auto& [block, records] : connectionsByBlock_) {
    for (const BlockConnection& record : records) owners.try_emplace(record.source.portHandle, block);
  }
  for (auto& [block, records] : connectionsByBlock_) {
    for (BlockConnection& record : records) {
      record.destination.blockHandle = kmf::unordered_map_at(owners, record.destination.portHandle);
    }
  }
  destinationsDirty_ = false;
}

}  // namespace gl::gti
