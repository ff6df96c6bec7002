#include "checks/systems.hpp"

#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/error_diagnostics.hpp"

namespace kinemo::checks {

formats::SourcePlace block_place(const GTBlock& block, const std::string& file) {
  const host::Diagram& diagram = host::parentSystem(block).diagram();
  return views::place_of(kmf::ustring_to_utf8_string(block.getFullPath(false)), &diagram, file);
}

std::string describe(const gtPort& port) {
  return "port '" + views::port_name(port) + "' of '" + views::relative_path(*port.getGrOwnerBlock()) + "'";
}

formats::DiagnosticObject object_of(const gtPort& port, bool net) {
  return {kmf::ustring_to_utf8_string(port.getGrOwnerBlock()->getFullPath(false)), views::port_name(port), net};
}

}  // namespace kinemo::checks
