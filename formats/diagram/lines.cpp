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

constexpr const char* reference_forms = "block.port, [block, port], or the name of a block that has just one port";

std::optional<PortReference> parse_text(const Scope& scope, const YamlNode& node) {
  const std::size_t dot = node.text.find('.');
  if (dot == std::string::npos && !node.text.empty()) return PortReference{node.text, std::nullopt};
  if (dot == std::string::npos || dot == 0 || dot + 1 == node.text.size() || node.text.rfind('.') != dot) {
    scope.error(node, "diagram:line", "'" + node.text + "' isn't a block and a port with one full stop between them",
                "[block, port] where a name holds a full stop");
    return std::nullopt;
  }
  return PortReference{node.text.substr(0, dot), node.text.substr(dot + 1)};
}

std::optional<PortReference> parse_reference(const Scope& scope, const YamlNode& node) {
  if (node.is_scalar()) return parse_text(scope, node);
  const bool list =
      node.is_sequence() && !node.children.empty() && node.children.size() <= 2 &&
      std::all_of(node.children.begin(), node.children.end(), [](const YamlNode* child) { return child->is_scalar(); });
  if (!list) {
    scope.error(node, "diagram:line", "this doesn't name a port", reference_forms);
    return std::nullopt;
  }
  PortReference reference{node.children[0]->text, std::nullopt};
  if (node.children.size() == 2) reference.port = node.children[1]->text;
  return reference;
}

constexpr std::size_t most_names_to_compare = 20'000;

void tell_unknown_block(const Scope& scope, const YamlNode& node, const std::string& name) {
  std::vector<std::string> known;
  if (scope.system->blocks().size() <= most_names_to_compare) {
    for (const GTBlock* block : scope.system->blocks()) {
      known.push_back(kmf::ustring_to_utf8_string(block->getGrName()));
    }
  }
  scope.error(node, "diagram:unknown-block", "no block '" + name + "'" + scope.report.suggest(name, known),
              known.empty() ? "" : list_names(known));
}

gtPort* only_port(const Scope& scope, const YamlNode& node, const GTBlock& block, const std::string& name) {
  const std::vector<gtPort*> ports = views::ports_in_kind_order(block);
  if (ports.size() == 1) return ports.front();
  scope.error(node, "diagram:unknown-port",
              "'" + name + "' has " + std::to_string(ports.size()) + " ports, and the line doesn't say which",
              list_names(views::port_names(block)));
  return nullptr;
}

gtPort* find_port(const Scope& scope, const YamlNode& node, const std::set<std::string>& broken) {
  const auto reference = parse_reference(scope, node);
  if (!reference || broken.count(reference->block) != 0) return nullptr;
  const GTBlock* block = scope.system->find(kmf::utf8_string_to_ustring(reference->block));
  if (block == nullptr) {
    tell_unknown_block(scope, node, reference->block);
    return nullptr;
  }
  if (!reference->port) return only_port(scope, node, *block, reference->block);
  gtPort* port = views::find_port(*block, *reference->port);
  if (port == nullptr) {
    scope.error(node, "diagram:unknown-port",
                "'" + reference->block + "' has " + views::describe_unknown_port(*block, *reference->port),
                list_names(views::port_names(*block)));
  }
  return port;
}

void read_line(const Scope& scope, const YamlNode& line, const std::set<std::string>& broken) {
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
  std::vector<gtPort*> ports;
  for (const YamlNode* end : ends->children) {
    if (gtPort* port = find_port(scope, *end, broken)) ports.push_back(port);
  }
  if (ports.size() != ends->children.size()) return;
  scope.guarded(line, [&] { scope.system->addLine(ports, kmf::utf8_string_to_ustring(name), scope.host_place(line)); });
}

}  // namespace

void read_lines(const Scope& scope, const YamlNode& lines, const std::set<std::string>& broken) {
  if (!expect_list(scope, lines, "'lines'")) return;
  for (const YamlNode* line : lines.children) read_line(scope, *line, broken);
}

}  // namespace kinemo::formats::diagram
