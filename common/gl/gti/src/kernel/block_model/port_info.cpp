#include "common/gl/gti/export/port_info.hpp"

namespace gl::gti::detail {

PortInfo::PortInfo(const kmf::VnId& id, const std::string& type, const ustring& label, const ustring& unit)
    : id_(id), type_(type), label_(label), unit_(unit) {}

bool PortInfo::operator==(const PortInfo& other) const {
  return id_ == other.id_ && type_ == other.type_ && label_ == other.label_ && unit_ == other.unit_;
}

}  // namespace gl::gti::detail
