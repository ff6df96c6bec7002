#include "formats/diagram/writing.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

namespace kinemo::formats::diagram {

namespace {

constexpr std::size_t longest_line = 100;

bool has_dot(const std::string& text) {
  return text.find('.') != std::string::npos;
}

/// As lines name a port: "R1.p", the name alone of a block with one port, or a list where a name has a full stop.
std::string reference(Writing& writing, const gtPort& port) {
  const GTBlock& block = *port.getGrOwnerBlock();
  const std::string name = kmf::ustring_to_utf8_string(block.getGrName());
  if (host::ports(block).size() == 1) {
    const std::string alone = writing.name(&block, block.getGrName());
    return has_dot(name) ? "[" + alone + "]" : alone;
  }
  const std::string port_name = views::port_name(port);
  if (port_name.empty()) writing.refuse(&block, "a line ends at a port without a name");
  if (has_dot(name) || has_dot(port_name)) {
    return "[" + writing.name(&block, block.getGrName()) + ", " + writing.name(&block, port_name) + "]";
  }
  // The whole name is checked, too: half a character may stand in it.
  writing.name(&block, block.getGrName());
  return writing.name(&block, name + "." + port_name);
}

std::string line_ports(Writing& writing, const host::Line& line, std::size_t indent) {
  std::string text = "[";
  std::size_t width = 0;
  for (const gtPort* port : line.ports) {
    const std::string told = reference(writing, *port);
    if (text.size() > 1) text += ",";
    if (width + told.size() > longest_line) {
      text += "\n" + std::string(indent + 4, ' ');
      width = 0;
    } else if (text.size() > 1) {
      text += " ";
    }
    text += told;
    width += told.size() + 2;
  }
  return text + "]";
}

void write_line(Writing& writing, const host::Line& line, std::size_t indent) {
  writing.text += std::string(indent, ' ') + "- ";
  if (line.name.empty()) {
    writing.text += line_ports(writing, line, indent) + "\n";
  } else {
    const GTBlock* const first = line.ports.front()->getGrOwnerBlock();
    writing.text +=
        yaml_mapping({{"name", writing.name(first, line.name)}, {"ports", line_ports(writing, line, indent)}}) + "\n";
  }
}

/// A line of one port without a name joins nothing; nobody would miss it.
bool means_something(const host::Line& line) {
  return line.ports.size() > 1 || (line.ports.size() == 1 && !line.name.empty());
}

}  // namespace

void write_lines(Writing& writing, const host::System& system, std::size_t indent) {
  bool opened = false;
  for (const auto& line : system.lines()) {
    if (!means_something(*line)) continue;
    if (!opened) writing.open(indent, "lines");
    opened = true;
    write_line(writing, *line, indent + 2);
  }
}

}  // namespace kinemo::formats::diagram
