#include "views/block_ports.hpp"

#include "common/gl/gti/export/core_block_facade.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "formats/names.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/block_diagram/port.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <cctype>
#include <optional>

namespace kinemo::views {

namespace host = embedded::block_diagram;

namespace {

/// What follows the letters of a name such as n12; nothing for other names.
std::optional<unsigned long> trailing_number(const std::string& name) {
  const auto digits = std::find_if(name.begin(), name.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  const bool numbered = digits != name.begin() && digits != name.end() && name.end() - digits < 9 &&
                        std::all_of(digits, name.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  if (!numbered) return std::nullopt;
  return std::stoul(std::string(digits, name.end()));
}

struct NumberedPort {
  unsigned long number;
  gtPort* port;
};

}  // namespace

std::string port_name(const gtPort& port) {
  const GTBlock& block = *port.getGrOwnerBlock();
  if (host::isIoPort(block)) return kmf::ustring_to_utf8_string(block.getGrName());
  if (host::isSubsystem(block)) {
    const GTBlock* io_port = host::ioPortOf(port);
    return io_port != nullptr ? kmf::ustring_to_utf8_string(io_port->getGrName()) : std::string();
  }
  if (!gl::gti::is_handle_to_core_block(block.getHandle())) return {};
  return gl::gti::handle_to_core_block(block.getHandle()).portName(gp_handle(&port));
}

std::vector<gtPort*> ports_in_kind_order(const GTBlock& block) {
  std::vector<gtPort*> ports = host::ports(block);
  if (host::isSubsystem(block) || host::isIoPort(block)) return ports;
  std::vector<NumberedPort> numbered;
  for (gtPort* port : ports) {
    const auto number = trailing_number(port_name(*port));
    if (!number) return ports;
    numbered.push_back({*number, port});
  }
  std::stable_sort(numbered.begin(), numbered.end(),
                   [](const NumberedPort& a, const NumberedPort& b) { return a.number < b.number; });
  std::transform(numbered.begin(), numbered.end(), ports.begin(), [](const NumberedPort& n) { return n.port; });
  return ports;
}

gtPort* find_port(const GTBlock& block, std::string_view name) {
  if (host::isSubsystem(block)) return host::subsystemPort(block, kmf::utf8_string_to_ustring(std::string(name)));
  for (gtPort* port : host::ports(block)) {
    if (port_name(*port) == name) return port;
  }
  return nullptr;
}

std::vector<std::string> port_names(const GTBlock& block) {
  std::vector<std::string> names;
  for (const gtPort* port : ports_in_kind_order(block)) names.push_back(port_name(*port));
  return names;
}

std::string describe_unknown_port(const GTBlock& block, std::string_view name) {
  const std::vector<std::string> names = port_names(block);
  if (names.empty()) return "no ports";
  return "no port '" + std::string(name) + "'" + formats::did_you_mean(name, names);
}

std::string relative_path(const ustring& full_path) {
  // A "/" inside a name is doubled, so the first single one ends the diagram's name.
  std::size_t at = 0;
  while (at < full_path.size() && full_path[at] != u'/') ++at;
  return at < full_path.size() ? kmf::ustring_to_utf8_string(full_path.substr(at + 1)) : std::string();
}

std::string relative_path(const GTBlock& block) {
  return relative_path(block.getFullPath(false));
}

}  // namespace kinemo::views
