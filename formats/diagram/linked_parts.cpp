#include "formats/diagram/linked_parts.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "formats/diagram/relative_path.hpp"
#include "formats/diagram/writing.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::diagram {

namespace {

std::string file_of(const GTBlock& block) {
  return kmf::ustring_to_utf8_string(block.host().subsystem()->referenceFile);
}

/// All that a part's file says of a block, with the parts that it links to written out.
std::string contents_of(const GTBlock& block) {
  DiagnosticList problems;
  Writing writing(problems, {}, nullptr);
  const host::System& inside = *host::contents(block);
  writing.count_mask(block);
  writing.count_masks(inside);
  write_definition(writing, block);
  write_systems(writing, inside, 0, 0);
  return problems.has_errors() ? std::string() : writing.text;
}

std::string free_name() {
  for (std::size_t number = 1;; ++number) {
    const std::string name = "linked_part_" + std::to_string(number);
    if (host::Diagram::find(name) == nullptr) return name;
  }
}

host::Diagram* read_part(const std::string& file) {
  const std::string text = "{kinemo: 1, name: " + free_name() + ", blocks: {part: {type: " + yaml_name(file) + "}}}";
  DiagnosticList problems;
  return read_diagram_text(text, "linked part", problems);
}

}  // namespace

LinkedParts::~LinkedParts() {
  for (const auto& [file, part] : parts_) {
    if (part.diagram != nullptr) host::Diagram::close(*part.diagram);
  }
}

const LinkedParts::Part& LinkedParts::part(const std::string& file) {
  const auto [found, is_new] = parts_.try_emplace(file);
  Part& part = found->second;
  if (is_new) part.diagram = read_part("./" + relative_path(file, {}));
  if (is_new && part.diagram != nullptr) {
    part.block = part.diagram->root().blocks().front();
    part.contents = contents_of(*part.block);
  }
  return part;
}

const GTBlock* LinkedParts::unchanged(const GTBlock& block) {
  const std::string file = file_of(block);
  // A file that held a link to itself could not be read.
  if (file.empty() || (!file_.empty() && is_same_file(file, file_))) return nullptr;
  const Part& known = part(file);
  if (known.block == nullptr || known.contents.empty()) return nullptr;
  return contents_of(block) == known.contents ? known.block : nullptr;
}

std::string LinkedParts::path(const GTBlock& block) const {
  const std::string path = relative_path(file_of(block), file_);
  return path[0] == '.' || path[0] == '/' ? path : "./" + path;
}

}  // namespace kinemo::formats::diagram
