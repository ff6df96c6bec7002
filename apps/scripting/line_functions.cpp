// Lines: drawn, named, taken away.

#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/port_reference.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <algorithm>

namespace kinemo::scripting {

namespace {

std::string port_list(const std::vector<gtPort*>& ports) {
  std::string text;
  for (const gtPort* port : ports) {
    text += (text.empty() ? "" : ", ") + kmf::ustring_to_utf8_string(port->getGrOwnerBlock()->getGrName()) + "." +
            views::port_name(*port);
  }
  return text;
}

/// The lines that end at all of the ports. @throws "NoLine" (ports, system)
std::vector<const host::Line*> lines_at(const std::vector<gtPort*>& ports, const host::System& system) {
  std::vector<const host::Line*> lines = host::linesAt(*ports.front());
  for (const gtPort* port : ports) {
    const auto misses = [&](const host::Line* line) {
      return std::find(line->ports.begin(), line->ports.end(), port) == line->ports.end();
    };
    lines.erase(std::remove_if(lines.begin(), lines.end(), misses), lines.end());
  }
  if (lines.empty()) kmf::throw_message(diagram_messages, "NoLine", port_list(ports), system.path());
  return lines;
}

/// A line of one port means something only where it names the port's net. @throws "LineJoinsNothing" (ports)
void check_line(const std::vector<gtPort*>& ports, const ustring& name) {
  const bool one = std::all_of(ports.begin(), ports.end(), [&](const gtPort* port) { return port == ports.front(); });
  if (one && (name.empty() || ports.empty())) {
    kmf::throw_message(diagram_messages, "LineJoinsNothing", port_list(ports));
  }
}

struct NewLine {
  std::vector<gtPort*> ports;
  ustring name;
};

/// One element of what `lines` tells. @throws "NotLines" (input, what was given), and what `port_of` raises
NewLine line_of(const Call& call, std::size_t input, std::size_t i, const host::System& system) {
  const cvArray_tag* const ports = cvGetField(call[input], i, "ports");
  if (ports == nullptr || !cvIsCell(ports)) {
    kmf::throw_message(diagram_messages, "NotLines", std::to_string(input + 1),
                       embedded::scripting_runtime::inline_text(call[input], 60));
  }
  const InputPlace place{call.name, input + 1, "ports"};
  NewLine line;
  for (std::size_t k = 0; k < cvGetNumberOfElements(ports); ++k) {
    line.ports.push_back(port_of(cvGetCell(ports, k), place, system));
  }
  const cvArray_tag* const name = cvGetField(call[input], i, "name");
  if (name != nullptr) line.name = text_of(name, {call.name, input + 1, "name"});
  check_line(line.ports, line.name);
  return line;
}

/// All of the list or, after an error, none.
void add_lines(const Call& call, std::size_t input, host::System& system) {
  std::vector<NewLine> all;
  for (std::size_t i = 0; i < cvGetNumberOfElements(call[input]); ++i) all.push_back(line_of(call, input, i, system));
  for (const NewLine& line : all) system.addLine(line.ports, line.name);
}

void add_line(Call& call) {
  host::System& system = system_from(call, 0);
  if (call.size() == 2 && cvIsStruct(call[1])) return add_lines(call, 1, system);
  const std::vector<gtPort*> ports = ports_from(call, 1, call.size(), system);
  check_line(ports, {});
  system.addLine(ports);
}

void delete_line(Call& call) {
  host::System& system = system_from(call, 0);
  for (const host::Line* line : lines_at(ports_from(call, 1, call.size(), system), system))
    host::removeLine(system, *line);
}

/// A port without a line gets a stub, which names its net.
void name_line(Call& call) {
  host::System& system = system_from(call, 0);
  const ustring name = ustring_from(call, 2);
  gtPort* const port = ports_from(call, 1, 2, system).front();
  const std::vector<const host::Line*> lines = host::linesAt(*port);
  if (!lines.empty()) return host::renameLine(system, *lines.front(), name);
  if (!name.empty()) system.addLine({port}, name);
}

}  // namespace

std::vector<DiagramFunction> line_functions() {
  return {{"add_line",
           2,
           any_number,
           add_line,
           {"add_line(system, port, port, ...)\nadd_line(system, list)",
            "Joins ports of a system by a line, or by those of a list as lines(system) tells it.",
            "The system is a diagram or a subsystem. A port is 'Block.port', the name alone of a block with one port, "
            "or {'Block 1.5', 'port'} where a name holds a full stop."}},
          {"delete_line",
           2,
           any_number,
           delete_line,
           {"delete_line(system, port, ...)", "Takes away the lines that end at all of the ports.",
            "With one port, all lines of it."}},
          {"name_line",
           3,
           3,
           name_line,
           {"name_line(system, port, name)", "Names the line at a port, and by that its net.",
            "A port without a line gets a stub that names its net. The empty text takes the name away."}}};
}

}  // namespace kinemo::scripting
