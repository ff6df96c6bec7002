// Connection ports of a core block: how the host's ports follow the descriptor, and how a port's handle leads back to
// its identifier.

#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace gl::gti {

namespace {

ustring unit_of(const std::vector<detail::PortInfo>& side, int i) {
  return side.empty() ? ustring() : side[static_cast<std::size_t>(i)].unit();
}

bool has_size(const std::vector<detail::PortInfo>& side, int count) {
  return static_cast<int>(side.size()) == count;
}

}  // namespace

bool CoreBlock::portsAreAsIn(const BlockDescriptor& descriptor) const {
  return leftPorts_ == descriptor.leftPorts() && rightPorts_ == descriptor.rightPorts() &&
         has_size(leftPorts_, getGrNumLeftConnectionPorts()) && has_size(rightPorts_, getGrNumRightConnectionPorts());
}

void CoreBlock::configurePorts(const BlockDescriptor& descriptor) {
  portNames_.clear();
  // An unchanged block doesn't touch the host's ports, so that its lines stay.
  if (!descriptor.portConfigurationEnabled() || portsAreAsIn(descriptor)) return;
  portIds_.clear();
  setGrNumLeftConnectionPorts(static_cast<int>(descriptor.numLeftPorts()), nullptr);
  leftPorts_ = descriptor.leftPorts();
  for (std::size_t i = 0; i < leftPorts_.size(); ++i)
    configurePort(getGrLeftConnectionPort(static_cast<int>(i)), leftPorts_[i]);
  setGrNumRightConnectionPorts(static_cast<int>(descriptor.numRightPorts()), nullptr);
  rightPorts_ = descriptor.rightPorts();
  for (std::size_t i = 0; i < rightPorts_.size(); ++i)
    configurePort(getGrRightConnectionPort(static_cast<int>(i)), rightPorts_[i]);
}

void CoreBlock::configurePort(gtPort* port, const detail::PortInfo& info) {
  portIds_.insert(info.id());
  if (GTDiagnostic* diagnostic = gtSetPortDomainPortType(port, domain_ + "." + info.type())) ThrowException(diagnostic);
}

void CoreBlock::fillPortNames() {
  // The host may hold fewer ports than were configured where the descriptor has switched the configuration off.
  const int left = std::min(static_cast<int>(leftPorts_.size()), getGrNumLeftConnectionPorts());
  for (int i = 0; i < left; ++i)
    portNames_[gp_handle(getGrLeftConnectionPort(i))] = leftPorts_[static_cast<std::size_t>(i)].id();
  const int right = std::min(static_cast<int>(rightPorts_.size()), getGrNumRightConnectionPorts());
  for (int i = 0; i < right; ++i)
    portNames_[gp_handle(getGrRightConnectionPort(i))] = rightPorts_[static_cast<std::size_t>(i)].id();
}

const std::string& CoreBlock::portName(double portHandle) {
  if (portNames_.empty()) fillPortNames();
  return kmf::map_at(portNames_, portHandle);
}

cvArray_tag* CoreBlock::portIdCell(const std::vector<detail::PortInfo>& ports, kmf::CvCleaner& cleaner) {
  if (ports.empty()) return nullptr;
  cvArray_tag* cell = cleaner.addCvArray(cvCreateCellMatrix(1, ports.size()));
  for (std::size_t i = 0; i < ports.size(); ++i) cvSetCell(cell, i, cvCreateString(ports[i].id()));
  return cell;
}

ustring CoreBlock::getGrLeftPortUnit(int i) {
  return unit_of(leftPorts_, i);
}

ustring CoreBlock::getGrRightPortUnit(int i) {
  return unit_of(rightPorts_, i);
}

}  // namespace gl::gti
