#include "views/systems.hpp"

#include <vector>

namespace kinemo::views {

namespace {

void push_inner(host::System& system, std::vector<host::System*>& pending) {
  const bool variant = system.owner() != nullptr && host::isVariant(*system.owner());
  const GTBlock* active = variant ? host::activeChoice(*system.owner()) : nullptr;
  const std::vector<GTBlock*>& blocks = system.subsystems();
  for (auto at = blocks.rbegin(); at != blocks.rend(); ++at) {
    if (host::isOpaque(**at) || (variant && *at != active)) continue;
    pending.push_back(host::contents(**at));
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

}  // namespace kinemo::views
