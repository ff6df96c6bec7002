#include "common/gl/gti/export/core_block_info.hpp"

namespace gl::gti {

CoreBlockInfo::CoreBlockInfo() = default;
CoreBlockInfo::CoreBlockInfo(const CoreBlockInfo& other) = default;
CoreBlockInfo& CoreBlockInfo::operator=(const CoreBlockInfo& other) = default;
CoreBlockInfo::~CoreBlockInfo() = default;

}  // namespace gl::gti
