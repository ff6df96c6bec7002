#pragma once

#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"

namespace gl::gti {

/// The entry of any leaf that isn't of our own block class, such as an opaque subsystem. Its ports are named after the
/// I/O port blocks inside it.
boost::shared_ptr<BlockEntryData> makeOpaqueBlockEntry(KmIoPortCache& ioPorts, double handle,
                                                       ModelConnectivity& connectivity);

}  // namespace gl::gti
