#include "checks/check.hpp"
#include "checks/systems.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/host_nets.hpp"

#include <map>

namespace kinemo::checks {

namespace {

/// The first port of each type on a net that runs through all systems.
using FirstOfType = std::map<std::string, const gtPort*>;

void tell(const FirstOfType& types, const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings) {
  std::string text = "ports of different types share a net: ";
  for (const auto& [type, port] : types) {
    text += (type == types.begin()->first ? "" : ", ") + describe(*port) + " is " + type;
  }
  const GTBlock& block = *types.begin()->second->getGrOwnerBlock();
  formats::Diagnostic& finding =
      findings.add(rule.severity, std::string(rule.id), block_place(block, input.file), text);
  for (const auto& [type, port] : types) {
    const GTBlock& at = *port->getGrOwnerBlock();
    finding.notes.push_back({"in " + kmf::ustring_to_utf8_string(at.getFullPath(false)), block_place(at, input.file)});
    finding.objects.push_back(object_of(*port, true));
  }
}

}  // namespace

void check_mixed_port_types(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings) {
  views::HostNets nets;
  for_each_system(input.diagram, [&](host::System& system) {
    for (const GTBlock* block : system.blocks()) {
      if (host::isSubsystem(*block) || host::isIoPort(*block)) continue;
      for (gtPort* start : host::ports(*block)) {
        FirstOfType types;
        nets.follow(*start, [&](const gtPort& port) {
          const std::string& type = gtGetPortDomainPortType(&port);
          if (!type.empty()) types.emplace(type, &port);
        });
        if (types.size() > 1) tell(types, input, rule, findings);
      }
    }
  });
}

}  // namespace kinemo::checks
