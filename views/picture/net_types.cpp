#include "views/picture/net_types.hpp"

#include "views/host_nets.hpp"
#include "views/systems.hpp"

namespace kinemo::views::picture {

NetTypes::NetTypes(host::Diagram& diagram) {
  HostNets nets;
  for_each_system(diagram, [&](host::System& system) {
    for (const GTBlock* block : system.blocks()) {
      for (gtPort* port : host::ports(*block)) {
        const std::string& type = gtGetPortDomainPortType(port);
        if (type.empty()) continue;
        nets.follow(*port, [&](const gtPort& reached) { types_.emplace(&host::netOf(reached), &type); });
      }
    }
  });
}

const std::string& NetTypes::of(const std::vector<gtPort*>& net) const {
  static const std::string none;
  const auto found = types_.find(&net);
  return found == types_.end() ? none : *found->second;
}

}  // namespace kinemo::views::picture
