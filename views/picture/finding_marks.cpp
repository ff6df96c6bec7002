#include "views/picture/finding_marks.hpp"

#include "embedded/block_diagram/paths.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/systems.hpp"

#include <algorithm>

namespace kinemo::views::picture {

namespace {

/// The innermost block of the path that there is; null for none.
const GTBlock* nearest_block(const host::Diagram& diagram, const ustring& path) {
  const GTBlock* nearest = nullptr;
  const host::System* system = &diagram.root();
  for (const ustring& name : host::splitPath(path)) {
    const GTBlock* block = system != nullptr ? system->find(name) : nullptr;
    if (block == nullptr) break;
    nearest = block;
    system = host::contents(*block);
  }
  return nearest;
}

void mark(const host::Diagram& diagram, const formats::DiagnosticObject& object, Marks& marks) {
  const ustring path = kmf::utf8_string_to_ustring(relative_path(kmf::utf8_string_to_ustring(object.block)));
  if (path.empty()) return;
  const GTBlock* block = diagram.findBlock(path);
  if (block == nullptr) {
    if (const GTBlock* around = nearest_block(diagram, path)) marks.add_block(*around);
    return;
  }
  gtPort* port = object.port.empty() ? nullptr : find_port(*block, object.port);
  if (port == nullptr) return marks.add_block(*block);
  if (object.net) return marks.add_net(*port);
  marks.ports.insert(port);
  if (const GTBlock* owner = host::parentSystem(*block).owner()) marks.add_block(*owner);
}

bool has_marks(const host::System& system, const Marks& marks) {
  const auto is_marked = [&](const GTBlock* block) {
    if (marks.blocks.count(block) != 0) return true;
    const std::vector<gtPort*> ports = host::ports(*block);
    return std::any_of(ports.begin(), ports.end(), [&](const gtPort* port) { return marks.ports.count(port) != 0; });
  };
  return std::any_of(system.blocks().begin(), system.blocks().end(), is_marked);
}

}  // namespace

PictureRequest picture_of_findings(host::Diagram& diagram, const formats::DiagnosticList& findings,
                                   embedded::drawing::Format format) {
  PictureRequest request;
  request.format = format;
  for (const formats::Diagnostic& finding : findings.all()) {
    for (const formats::DiagnosticObject& object : finding.objects) mark(diagram, object, request.marks);
  }
  for_each_system(diagram, [&](host::System& system) {
    if (has_marks(system, request.marks)) request.systems.push_back(&system);
  });
  if (request.systems.empty()) request.systems.push_back(&diagram.root());
  if (format != embedded::drawing::Format::Pdf) request.systems.resize(1);
  return request;
}

}  // namespace kinemo::views::picture
