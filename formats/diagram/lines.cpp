#include "formats/diagram/reading.hpp"

#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <algorithm>

namespace kinemo::formats::diagram {

namespace {

/// A port as a line names it: `R1.p`, `[R1, p]`, or the name alone of a block with one port.
struct PortReference {
  std::string block;
  std::optional<std::string> port;
};

std::optional<PortReference> parse_text(const std::string& text) {
  const std::size_t dot = text.find('.');
  if (dot == std::string::npos && !text.empty()) return PortReference{text, std::nullopt};
  if (dot == std::string::npos || dot == 0 || dot + 1 == text.size() || text.rfind('.') != dot) return std::nullopt;
  return PortReference{text.substr(0, dot), text.substr(dot + 1)};
}

std::optional<PortReference> parse_reference(const YamlNode& node) {
  if (node.is_scalar()) return parse_text(node.text);
  const bool list =
      node.is_sequence() && !node.children.empty() && node.children.size() <= 2 &&
      std::all_of(node.children.begin(), node.children.end(), [](const YamlNode* child) { return child->is_scalar(); });
  if (!list) return std::nullopt;
  PortReference reference{node.children[0]->text, std::nullopt};
  if (node.children.size() == 2) reference.port = node.children[1]->text;
  return reference;
}

const GTBlock* find_block(const Scope& scope, const PortReference& reference) {
  return scope.system->find(kmf::utf8_string_to_ustring(reference.block));
}

/// Stand-ins get their ports from the lines, in turn on both sides; null beyond what can be shown.
gtPort* port_of_stand_in(const GTBlock& block, const std::string& name) {
  constexpr int most_ports = 1000;
  const ustring wide = kmf::utf8_string_to_ustring(name);
  if (gtPort* known = host::subsystemPort(block, wide)) return known;
  host::System& inside = *host::contents(block);
  const int count = static_cast<int>(inside.ioPorts().size());
  if (name.empty() || count == most_ports) return nullptr;
  return host::outerPort(inside.addPort(wide, count % 2 == 0 ? host::Side::Left : host::Side::Right, count));
}

/// Null where there is no such port.
gtPort* find_port(const Reading& reading, const Scope& scope, const YamlNode& node) {
  const auto reference = parse_reference(node);
  const GTBlock* block = reference ? find_block(scope, *reference) : nullptr;
  if (block == nullptr) return nullptr;
  const bool stand_in = reading.stand_ins.count(block) != 0;
  if (stand_in) return port_of_stand_in(*block, reference->port.value_or("?"));
  if (reference->port) return views::find_port(*block, *reference->port);
  const std::vector<gtPort*> ports = views::ports_in_kind_order(*block);
  return ports.size() == 1 ? ports.front() : nullptr;
}

// --- why there is no port

void tell_bad_reference(const Scope& scope, const YamlNode& node, const DiagnosticObject& object) {
  if (!node.is_scalar()) {
    return scope.error(node, "diagram:line", "this doesn't name a port",
                       "block.port, [block, port], or the name of a block that has just one port", object);
  }
  scope.error(node, "diagram:line", "'" + node.text + "' isn't a block and a port with one full stop between them",
              "[block, port] where a name holds a full stop", object);
}

constexpr std::size_t most_names_to_compare = 20'000;

void tell_unknown_block(const Scope& scope, const YamlNode& node, const std::string& name,
                        const DiagnosticObject& object) {
  std::vector<std::string> known;
  if (scope.system->blocks().size() <= most_names_to_compare) {
    for (const GTBlock* block : scope.system->blocks()) {
      known.push_back(kmf::ustring_to_utf8_string(block->getGrName()));
    }
  }
  scope.error(node, "diagram:unknown-block", "no block '" + name + "'" + scope.report.suggest(name, known),
              known.empty() ? "" : list_names(known), object);
}

void tell_unknown_port(const Scope& scope, const YamlNode& node, const GTBlock& block, const PortReference& reference) {
  const std::string what =
      reference.port ? "'" + reference.block + "' has " + views::describe_unknown_port(block, *reference.port)
                     : "'" + reference.block + "' has " + std::to_string(views::ports_in_kind_order(block).size()) +
                           " ports, and the line doesn't say which";
  scope.error(node, "diagram:unknown-port", what, list_names(views::port_names(block)),
              scope.at_block(reference.block).object());
}

/// What a fault of a line is about where its end names no block: the net that it would join.
DiagnosticObject net_of_line(const Scope& scope, const std::vector<gtPort*>& ports) {
  if (ports.empty()) return scope.object();
  const gtPort& port = *ports.front();
  return {kmf::ustring_to_utf8_string(port.getGrOwnerBlock()->getFullPath(false)), views::port_name(port), true};
}

void tell_no_port(const Scope& scope, const YamlNode& node, const std::set<std::string>& broken,
                  const std::vector<gtPort*>& others) {
  const auto reference = parse_reference(node);
  if (!reference) return tell_bad_reference(scope, node, net_of_line(scope, others));
  if (broken.count(reference->block) != 0) return;
  const GTBlock* block = find_block(scope, *reference);
  if (block == nullptr) return tell_unknown_block(scope, node, reference->block, net_of_line(scope, others));
  tell_unknown_port(scope, node, *block, *reference);
}

// --- lines

/// Joins what there is of the ports.
void join(const Reading& reading, const Scope& scope, const YamlNode& line, const std::vector<const YamlNode*>& ends,
          const std::string& name, const std::set<std::string>& broken) {
  std::vector<gtPort*> ports;
  std::vector<const YamlNode*> faulty;
  for (const YamlNode* end : ends) {
    gtPort* port = find_port(reading, scope, *end);
    port != nullptr ? ports.push_back(port) : faulty.push_back(end);
  }
  for (const YamlNode* end : faulty) tell_no_port(scope, *end, broken, ports);
  if (ports.empty()) return;
  scope.guarded(line, [&] { scope.system->addLine(ports, kmf::utf8_string_to_ustring(name), scope.host_place(line)); });
}

void read_line(const Reading& reading, const Scope& scope, const YamlNode& line, const std::set<std::string>& broken) {
  const YamlNode* ends = &line;
  std::string name;
  if (line.is_mapping()) {
    expect_object(scope, line, ObjectKind::line);
    ends = line.find("ports");
    if (const YamlNode* given = line.find("name")) name = expect_text(scope, *given, "a line's name").value_or("");
  }
  if (ends == nullptr || !ends->is_sequence()) {
    return scope.error(line, "diagram:line", "a line is a list of ports",
                       "[R1.p, C1.p], or {name: out, ports: [R1.p, C1.p]}");
  }
  if (ends->children.size() < (name.empty() ? 2U : 1U)) {
    return scope.error(line, "diagram:line", "the line joins nothing", "two ports or more");
  }
  join(reading, scope, line, ends->children, name, broken);
}

}  // namespace

void read_lines(const Reading& reading, const Scope& scope, const YamlNode& lines,
                const std::set<std::string>& broken) {
  if (!expect_list(scope, lines, "'lines'")) return;
  for (const YamlNode* line : lines.children) read_line(reading, scope, *line, broken);
}

}  // namespace kinemo::formats::diagram
