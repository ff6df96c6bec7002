#include "views/host_nets.hpp"

#include "embedded/block_diagram/diagram.hpp"

namespace kinemo::views {

namespace host = embedded::block_diagram;

namespace {

/// The same point one level up or down; null for a port of a leaf.
gtPort* across(const gtPort& port) {
  const GTBlock& block = *port.getGrOwnerBlock();
  if (host::isIoPort(block)) return host::outerPort(block);
  if (!host::isSubsystem(block) || host::isOpaque(block)) return nullptr;
  const GTBlock* inner = host::ioPortOf(port);
  return inner != nullptr ? host::ports(*inner).front() : nullptr;
}

}  // namespace

void HostNets::enter(gtPort* port) {
  if (port != nullptr && seen_.insert(&host::netOf(*port)).second) pending_.push_back(port);
}

void HostNets::follow(gtPort& start, const std::function<void(const gtPort&)>& visit) {
  enter(&start);
  while (!pending_.empty()) {
    const gtPort* next = pending_.back();
    pending_.pop_back();
    for (const gtPort* port : host::netOf(*next)) {
      visit(*port);
      enter(across(*port));
    }
  }
}

}  // namespace kinemo::views
