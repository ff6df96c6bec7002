#include "common/gl/gti/export/block_descriptor.hpp"

#include "platform/foundation/exception.hpp"

namespace gl::gti {

BlockDescriptor::BlockDescriptor() = default;
BlockDescriptor::BlockDescriptor(const BlockDescriptor& other) = default;
BlockDescriptor& BlockDescriptor::operator=(const BlockDescriptor& other) = default;
BlockDescriptor::~BlockDescriptor() = default;

void BlockDescriptor::addLeftPort(const kmf::VnId& id, const ustring& label, const std::string& type,
                                  const ustring& unit) {
  addPort(leftPorts_, detail::PortInfo(id, type, label, unit));
}

void BlockDescriptor::addRightPort(const kmf::VnId& id, const ustring& label, const std::string& type,
                                   const ustring& unit) {
  addPort(rightPorts_, detail::PortInfo(id, type, label, unit));
}

void BlockDescriptor::clearLeftPorts() {
  clearPorts(leftPorts_);
}

void BlockDescriptor::clearRightPorts() {
  clearPorts(rightPorts_);
}

void BlockDescriptor::autogenMask(const kmf::VnIdPath1& function, const char* text, bool flag1, bool flag2,
                                  bool flag3) {
  autogenMask_ = MaskAutogenOptions{function, text, flag1, flag2, flag3};
}

void BlockDescriptor::clearAutogenMask() {
  autogenMask_ = boost::none;
}

void BlockDescriptor::addPort(std::vector<detail::PortInfo>& side, const detail::PortInfo& port) {
  if (!ports_.emplace(port.id(), port).second)
    kmf::throw_message("kinemo:common:gl:gti:core_block", "PortAlreadyExists", std::string(port.id()));
  side.push_back(port);
}

void BlockDescriptor::clearPorts(std::vector<detail::PortInfo>& side) {
  for (const detail::PortInfo& port : side) ports_.erase(port.id());
  side.clear();
}

}  // namespace gl::gti
