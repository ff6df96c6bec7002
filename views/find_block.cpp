#include "views/find_block.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <vector>

namespace kinemo::views {

namespace host = embedded::block_diagram;

namespace {

const GTBlock* block_at(const host::Diagram& diagram, const std::string& path) {
  return diagram.findBlock(kmf::utf8_string_to_ustring(path));
}

std::string in_path(const ustring& name) {
  return kmf::ustring_to_utf8_string(host::escapedName(name));
}

UnknownName nothing_inside(const GTBlock& block) {
  return {"the block '" + relative_path(block) + "' has nothing inside", "a subsystem"};
}

/// What a path lacks: a name in the innermost system that there is, or that system itself.
UnknownName unknown_block(const host::Diagram& diagram, const std::string& path) {
  const std::vector<ustring> names = host::splitPath(kmf::utf8_string_to_ustring(path));
  const host::DeadEnd end = host::deadEnd(diagram.root(), names, 0);
  if (end.closed != nullptr) return nothing_inside(*end.closed);
  std::vector<std::string> known;
  for (const GTBlock* block : end.system->blocks()) known.push_back(in_path(block->getGrName()));
  std::string missing = in_path(names[end.name]);
  const std::string near = formats::did_you_mean(missing, known);
  for (std::size_t i = end.name + 1; i < names.size(); ++i) missing += "/" + in_path(names[i]);
  return {"'" + kmf::ustring_to_utf8_string(end.system->path()) + "' has no block '" + missing + "'" + near,
          formats::list_names(known)};
}

/// The first port of a line of that name in the system.
gtPort* find_line(const host::System& system, const ustring& name) {
  for (const auto& line : system.lines()) {
    if (line->name == name && !line->ports.empty()) return line->ports.front();
  }
  return nullptr;
}

/// The system that a path leads to but for its last name; null where there is none.
const host::System* system_around(const host::Diagram& diagram, const std::vector<ustring>& names) {
  const host::System* system = &diagram.root();
  for (auto name = names.begin(); system != nullptr && name + 1 != names.end(); ++name) {
    const GTBlock* block = system->find(*name);
    system = block != nullptr ? host::contents(*block) : nullptr;
  }
  return system;
}

gtPort* only_port(const GTBlock* block) {
  const std::vector<gtPort*> ports = block != nullptr ? host::ports(*block) : std::vector<gtPort*>();
  return ports.size() == 1 ? ports.front() : nullptr;
}

/// Of a named line, or of a block with one port.
gtPort* find_named(const host::Diagram& diagram, const std::string& path) {
  const std::vector<ustring> names = host::splitPath(kmf::utf8_string_to_ustring(path));
  const host::System* system = system_around(diagram, names);
  if (system == nullptr || names.back().empty()) return nullptr;
  gtPort* line = find_line(*system, names.back());
  return line != nullptr ? line : only_port(block_at(diagram, path));
}

/// A name without a port that is no net's.
UnknownName unknown_net(const host::Diagram& diagram, const std::string& path) {
  const char* valid = "a port such as Filter/R1.p, a block with one port, or the name of a line";
  if (const GTBlock* block = path.empty() ? nullptr : block_at(diagram, path)) {
    return {"the block '" + relative_path(*block) + "' has " + std::to_string(host::ports(*block).size()) +
                " ports, and '" + path + "' doesn't say which",
            formats::list_names(port_names(*block))};
  }
  const std::vector<ustring> names = host::splitPath(kmf::utf8_string_to_ustring(path));
  const host::System* system = system_around(diagram, names);
  if (system == nullptr) return unknown_block(diagram, path);
  std::vector<std::string> known;
  for (const auto& line : system->lines()) known.push_back(in_path(line->name));
  for (const GTBlock* block : system->blocks()) known.push_back(in_path(block->getGrName()));
  return {"no line is called '" + path + "'" + formats::did_you_mean(in_path(names.back()), known), valid};
}

/// The port of a text "path.port". Names may hold dots, so every dot is tried, the last one first; `block` becomes the
/// last block that was found in front of one, and `port` what stands behind it.
gtPort* find_port_of(const host::Diagram& diagram, const std::string& text, const GTBlock*& block, std::string& port) {
  for (std::size_t dot = text.rfind('.'); dot != std::string::npos && dot != 0; dot = text.rfind('.', dot - 1)) {
    const GTBlock* candidate = block_at(diagram, text.substr(0, dot));
    if (candidate == nullptr) continue;
    block = candidate;
    port = text.substr(dot + 1);
    if (gtPort* found = find_port(*block, port)) return found;
  }
  return nullptr;
}

}  // namespace

std::string inner_path(const host::Diagram& diagram, const std::string& path) {
  const std::string head = diagram.name() + "/";
  if (path.compare(0, head.size(), head) != 0 || block_at(diagram, path) != nullptr) return path;
  const std::string inner = path.substr(head.size());
  return block_at(diagram, inner) != nullptr || block_at(diagram, diagram.name()) == nullptr ? inner : path;
}

const GTBlock* find_block(const host::Diagram& diagram, const std::string& path, UnknownName& unknown) {
  const std::string inner = inner_path(diagram, path);
  const GTBlock* block = block_at(diagram, inner);
  if (block == nullptr) unknown = unknown_block(diagram, inner);
  return block;
}

host::System* find_system(host::Diagram& diagram, const std::string& path, UnknownName& unknown) {
  if (path.empty()) return &diagram.root();
  if (path == diagram.name() && block_at(diagram, path) == nullptr) return &diagram.root();
  const GTBlock* block = find_block(diagram, path, unknown);
  if (block == nullptr) return nullptr;
  host::System* system = host::contents(*block);
  if (system == nullptr) unknown = nothing_inside(*block);
  return system;
}

gtPort* find_net(host::Diagram& diagram, const std::string& name, UnknownName& unknown) {
  const std::string head = diagram.name() + "/";
  const std::string inner = name.compare(0, head.size(), head) == 0 ? name.substr(head.size()) : name;
  const GTBlock* block = nullptr;
  std::string port;
  for (const std::string& text : {name, inner}) {
    if (gtPort* found = find_port_of(diagram, text, block, port)) return found;
    if (gtPort* found = find_named(diagram, text)) return found;
  }
  if (block != nullptr) {
    unknown = {"the block '" + relative_path(*block) + "' has " + describe_unknown_port(*block, port),
               formats::list_names(port_names(*block))};
  } else if (inner.find('.') != std::string::npos) {
    unknown = unknown_block(diagram, inner.substr(0, inner.rfind('.')));
  } else {
    unknown = unknown_net(diagram, inner);
  }
  return nullptr;
}

}  // namespace kinemo::views
