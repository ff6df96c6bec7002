#include "checks/check.hpp"
#include "checks/systems.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

namespace kinemo::checks {

namespace {

/// In a variant subsystem ports meet by name, and a choice may lack some; lines don't count there.
bool has_lines(const host::System& system) {
  return system.owner() == nullptr || !host::isVariant(*system.owner());
}

void tell(const gtPort& port, const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings) {
  const GTBlock& block = *port.getGrOwnerBlock();
  const std::string text = host::isIoPort(block)
                               ? "nothing inside is joined to the port '" + views::port_name(port) + "' of '" +
                                     views::relative_path(*host::parentSystem(block).owner()) + "'"
                               : describe(port) + " is joined to nothing";
  formats::Diagnostic& finding =
      findings.add(rule.severity, std::string(rule.id), block_place(block, input.file), text);
  finding.notes.push_back({"in " + kmf::ustring_to_utf8_string(block.getFullPath(false)), {}});
  finding.objects.push_back(object_of(port));
}

}  // namespace

void check_unconnected_ports(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings) {
  for_each_system(input.diagram, [&](host::System& system) {
    if (!has_lines(system)) return;
    for (const GTBlock* block : system.blocks()) {
      for (const gtPort* port : host::ports(*block)) {
        if (host::netOf(*port).size() < 2) tell(*port, input, rule, findings);
      }
    }
  });
}

}  // namespace kinemo::checks
