#include "formats/diagram/read_part.hpp"

#include "embedded/block_diagram/edit.hpp"
#include "formats/diagram/reading.hpp"
#include "platform/foundation/strings.hpp"

#include <filesystem>

namespace kinemo::formats::diagram {

namespace {

/// What a file in the current folder would say of the block: `NAME: {type: PATH}`.
struct Use {
  Use(const ustring& block, const std::string& path) {
    name.text = kmf::ustring_to_utf8_string(block);
    type.text = path;
    key.text = "type";
    for (YamlNode* scalar : {&name, &key, &type}) scalar->kind = YamlNode::Kind::scalar;
    node.kind = YamlNode::Kind::mapping;
    node.children = {&key, &type};
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

  YamlNode name;
  YamlNode key;
  YamlNode type;
  YamlNode node;
};

/// Takes the block away again, should it have been placed.
void take_back(const host::System& system, std::size_t blocks_before) {
  if (system.blocks().size() != blocks_before) host::removeBlock(*system.blocks().back());
}

}  // namespace

GTBlock* read_part(host::System& system, const ustring& name, const std::string& path, DiagnosticList& problems) {
  Reading reading(problems);
  reading.diagram = &system.diagram();
  const ModelFile& here = reading.files.add("", std::filesystem::current_path() / "here", "{}");
  const Use use(name, path);
  const Scope scope{reading.report, here, reading.link(here, nullptr), &system, use.name.text};
  const std::size_t blocks_before = system.blocks().size();
  try {
    read_subsystem(reading, scope, use.name, use.node);
    read_pending(reading, scope, use.node);
  } catch (...) {
    take_back(system, blocks_before);
    throw;
  }
  if (!reading.report.has_errors()) return system.blocks().back();
  problems.sort();
  take_back(system, blocks_before);
  return nullptr;
}

}  // namespace kinemo::formats::diagram
