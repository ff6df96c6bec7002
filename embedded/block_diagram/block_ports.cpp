// Connection ports of blocks: how many, and where.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <memory>

namespace embedded::block_diagram {

namespace {

std::size_t slot(const GTBlockHostData& data, bool left, std::size_t position) {
  return left ? position : data.leftPorts + position;
}

void renumber(GTBlockHostData& data, bool left, std::size_t from) {
  for (std::size_t i = from; i < data.portCount(left); ++i) data.port(left, i)->index = static_cast<int>(i);
}

void portsChanged(const GTBlock& block) {
  if (System* system = block.host().system) netsChanged(*system);
}

void setCount(GTBlock& block, bool left, int count) {
  if (count < 0)
    kmf::throw_message("kinemo:host:block", "NegativePortCount", block.getFullPath(true), std::to_string(count));
  const auto wanted = static_cast<std::size_t>(count);
  while (block.host().portCount(left) > wanted) removePort(block, left, block.host().portCount(left) - 1);
  while (block.host().portCount(left) < wanted) insertPort(block, left, block.host().portCount(left));
}

gtPort* portAt(const GTBlockHostData& data, bool left, int i) {
  return i >= 0 && static_cast<std::size_t>(i) < data.portCount(left) ? data.port(left, static_cast<std::size_t>(i))
                                                                      : nullptr;
}

}  // namespace

gtPort& insertPort(GTBlock& block, bool left, std::size_t position) {
  GTBlockHostData& data = block.host();
  auto port = std::make_unique<gtPort>(&block, left, static_cast<int>(position));
  data.ports.insert(data.ports.begin() + static_cast<std::ptrdiff_t>(slot(data, left, position)), port.get());
  if (left) ++data.leftPorts;
  renumber(data, left, position + 1);
  portsChanged(block);
  return *port.release();
}

void removePort(GTBlock& block, bool left, std::size_t position) {
  GTBlockHostData& data = block.host();
  const std::unique_ptr<gtPort> port(data.port(left, position));
  SystemAccess::detachLines(*port);
  data.ports.erase(data.ports.begin() + static_cast<std::ptrdiff_t>(slot(data, left, position)));
  if (left) --data.leftPorts;
  renumber(data, left, position);
  portsChanged(block);
}

ustring describe(const gtPort& port) {
  const GTBlock& block = *port.getGrOwnerBlock();
  ustring text = block.getFullPath(true) + u".";
  if (const GTBlock* ioPort = ioPortOf(port)) return text + ioPort->getGrName();
  return text + kmf::utf8_string_to_ustring((port.isLeft() ? "LConn" : "RConn") + std::to_string(port.index + 1));
}

std::vector<gtPort*> ports(const GTBlock& block) {
  return block.host().ports;
}

}  // namespace embedded::block_diagram

using namespace embedded::block_diagram;

/// The host has no signal ports: whatever is asked for, a block shows none.
void GTBlock::setGrNumInputPorts(int, void*, int) {}
void GTBlock::setGrNumOutputPorts(int, void*) {}

int GTBlock::getGrNumLeftConnectionPorts() const {
  return static_cast<int>(host_->portCount(true));
}
int GTBlock::getGrNumRightConnectionPorts() const {
  return static_cast<int>(host_->portCount(false));
}
void GTBlock::setGrNumLeftConnectionPorts(int count, void*) {
  setCount(*this, true, count);
}
void GTBlock::setGrNumRightConnectionPorts(int count, void*) {
  setCount(*this, false, count);
}
gtPort* GTBlock::getGrLeftConnectionPort(int i) const {
  return portAt(*host_, true, i);
}
gtPort* GTBlock::getGrRightConnectionPort(int i) const {
  return portAt(*host_, false, i);
}
