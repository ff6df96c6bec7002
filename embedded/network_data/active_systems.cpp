#include "embedded/network_data/active_systems.hpp"

#include "embedded/block_diagram/system_data.hpp"

namespace embedded::network_data {

using namespace block_diagram;

namespace {

std::uint32_t netCount(const System& system) {
  return static_cast<std::uint32_t>(netsOf(system).members.size());
}

bool typeIsOf(const std::string& portType, const std::string& domain) {
  return portType.size() > domain.size() && portType[domain.size()] == '.' &&
         portType.compare(0, domain.size(), domain) == 0;
}

/// What is known of the domain of an opaque subsystem from the ports that it is joined to in its own system.
bool neighboursAllow(const GTBlock& subsystem, const std::string& domain) {
  bool typed = false;
  for (const gtPort* port : ports(subsystem)) {
    for (const gtPort* other : netOf(*port)) {
      const std::string& type = gtGetPortDomainPortType(other);
      if (typeIsOf(type, domain)) return true;
      typed = typed || !type.empty();
    }
  }
  return !typed;
}

}  // namespace

std::vector<ActiveSystem> activeSystems(const Diagram& diagram) {
  std::vector<ActiveSystem> result{{&diagram.root(), 0, 0}};
  std::uint32_t nets = netCount(diagram.root());
  for (std::uint32_t i = 0; i < result.size(); ++i) {
    const System& system = *result[i].system;
    const bool variant = system.owner() && isVariant(*system.owner());
    for (GTBlock* block : variant ? activeBlocks(system) : system.subsystems()) {
      if (!isSubsystem(*block) || isOpaque(*block)) continue;
      const System& inside = *contents(*block);
      result.push_back({&inside, i, nets});
      nets += netCount(inside);
    }
  }
  return result;
}

bool isLeaf(const GTBlock& block) {
  return isSubsystem(block) ? isOpaque(block) : !isIoPort(block) && block.isPhysicalNetworkBlock();
}

bool isLeafOf(const GTBlock& block, const std::string& domain) {
  if (!isLeaf(block)) return false;
  if (isSubsystem(block)) return neighboursAllow(block, domain);
  const char* name = block.getDomainName();
  return name && domain == name;
}

}  // namespace embedded::network_data
