#include "common/gl/gti/export/block_data.hpp"

namespace gl::gti {

void BlockData::addParameter(const kmf::VnId& id, const ParameterValue& value) {
  parameters_.insert_or_assign(id, value);
}

bool BlockData::operator==(const BlockData& other) const {
  return parameters_ == other.parameters_ && ports_ == other.ports_;
}

}  // namespace gl::gti
