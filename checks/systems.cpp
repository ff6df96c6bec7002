#include "checks/systems.hpp"

#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/error_diagnostics.hpp"

namespace kinemo::checks {

namespace {

void push_inner(host::System& system, std::vector<host::System*>& pending) {
  const bool variant = system.owner() != nullptr && host::isVariant(*system.owner());
  const GTBlock* active = variant ? host::activeChoice(*system.owner()) : nullptr;
  for (const GTBlock* block : system.subsystems()) {
    if (host::isOpaque(*block) || (variant && block != active)) continue;
    pending.push_back(host::contents(*block));
  }
}

}  // namespace

void for_each_system(host::Diagram& diagram, const std::function<void(host::System&)>& visit) {
  std::vector<host::System*> pending{&diagram.root()};
  while (!pending.empty()) {
    host::System* system = pending.back();
    pending.pop_back();
    visit(*system);
    push_inner(*system, pending);
  }
}

formats::SourcePlace block_place(const GTBlock& block, const std::string& file) {
  const host::Diagram& diagram = host::parentSystem(block).diagram();
  return views::place_of(kmf::ustring_to_utf8_string(block.getFullPath(false)), &diagram, file);
}

std::string describe(const gtPort& port) {
  return "port '" + views::port_name(port) + "' of '" + views::relative_path(*port.getGrOwnerBlock()) + "'";
}

}  // namespace kinemo::checks
