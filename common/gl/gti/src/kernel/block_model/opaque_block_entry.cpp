#include "common/gl/gti/src/kernel/block_model/opaque_block_entry.hpp"

#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"

#include <boost/make_shared.hpp>

namespace gl::gti {

namespace {

class OpaqueBlockEntryData final : public FactoryBlockEntryData {
 public:
  OpaqueBlockEntryData(KmIoPortCache& ioPorts, double handle, ModelConnectivity& connectivity) {
    readBlock(handle, connectivity);
    if (connectivity.connections(handle).empty()) return;
    const KmIoPortInfo& info = ioPorts.get(handle);
    readPorts(connectivity, [&info](double port) { return info.port(info.portId(port)).name(); });
  }

  BlockType::Value blockType() const override { return BlockType::OPAQUE; }
  boost::shared_ptr<BlockEntryData> clone() const override { return boost::make_shared<OpaqueBlockEntryData>(*this); }
};

}  // namespace

boost::shared_ptr<BlockEntryData> makeOpaqueBlockEntry(KmIoPortCache& ioPorts, double handle,
                                                       ModelConnectivity& connectivity) {
  return boost::make_shared<OpaqueBlockEntryData>(ioPorts, handle, connectivity);
}

}  // namespace gl::gti
