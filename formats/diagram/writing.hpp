// One writing of a diagram file: what its steps share. Made for one call and thrown away afterwards.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "formats/diagnostics.hpp"
#include "formats/diagram/yaml_text.hpp"
#include "platform/block_diagram/mask.hpp"

#include <map>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kinemo::formats::diagram {

namespace host = embedded::block_diagram;

class LinkedParts;

/// What a block of a library has when it has just been placed.
struct BlockDefaults {
  std::unordered_map<std::string, ustring> parameters;
  std::map<std::string, ustring> properties;
};

class Writing {
 public:
  /// `links` may be null: then linked parts are written out in place.
  Writing(DiagnosticList& problems, std::string shown_file, LinkedParts* links)
      : parts(links), problems_(problems), file_(std::move(shown_file)) {}

  std::string text;
  LinkedParts* parts;

  /// Tells that something can't be written; `block` may be null. Of very many refusals only the first ones are told.
  void refuse(const GTBlock* block, const std::string& what, const std::string& valid = {},
              const std::string& rule = "diagram:unwritable");

  /// Texts as YAML. Texts that aren't Unicode are refused.
  std::string value(const GTBlock* block, const ustring& told) { return yaml_value(checked(block, told)); }
  std::string name(const GTBlock* block, const ustring& told) { return yaml_name(checked(block, told)); }
  std::string value(const GTBlock* block, const std::string& utf8) { return yaml_value(checked(block, utf8)); }
  std::string name(const GTBlock* block, const std::string& utf8) { return yaml_name(checked(block, utf8)); }

  /// A line of a mapping: key, colon, value.
  void entry(std::size_t indent, const std::string& key, const std::string& value) {
    text += yaml_key(indent, key, ": " + value) + "\n";
  }
  /// A key whose value follows on lines of its own.
  void open(std::size_t indent, const std::string& key) { text += yaml_key(indent, key, ":") + "\n"; }
  /// A mapping on the line of its key where it is short, on lines of its own otherwise; nothing for an empty one.
  void mapping(std::size_t indent, const std::string& key, const YamlEntries& entries);

  /// A block, on the line of its key where it is short. `parameters` become a mapping behind the entry "type".
  void block(std::size_t indent, const std::string& key, const YamlEntries& entries, const YamlEntries& parameters);

  const BlockDefaults& defaults(const std::string& library_name);

  /// How many blocks have each mask: those that several have are written once. Every subsystem is counted before one is
  /// written.
  void count_mask(const GTBlock& subsystem);
  void count_masks(const host::System& top);
  bool is_shared(const GTMaskDefinition& mask) const { return mask_uses_.at(&mask) > 1; }
  /// The anchor of a mask that several blocks have, and whether it has been written.
  std::pair<std::string, bool> anchor(const GTMaskDefinition& mask);

 private:
  std::string checked(const GTBlock* block, const ustring& told);
  std::string checked(const GTBlock* block, const std::string& utf8);

  DiagnosticList& problems_;
  std::size_t refusals_ = 0;
  std::string file_;
  std::unordered_map<std::string, BlockDefaults> defaults_;
  std::unordered_map<const GTMaskDefinition*, std::size_t> mask_uses_;
  std::unordered_map<const GTMaskDefinition*, std::string> anchors_;
};

// --- the steps, each in a file of its own

/// Keys at the head of a model's file: settings, dictionary, workspace.
void write_settings(Writing& writing, host::Diagram& diagram, const std::string& file);
/// Blocks and lines of a system and of all below it. `indent` is that of the keys "blocks" and "lines", `nesting` the
/// number of collections of YAML around them.
void write_systems(Writing& writing, const host::System& top, std::size_t indent, std::size_t nesting);
/// A block of a library, with its key.
void write_library_block(Writing& writing, const GTBlock& block, std::size_t indent);
/// All keys of a subsystem but "blocks", "lines" and "variant"; `indent` is that of the block's own key.
void write_subsystem_head(Writing& writing, const GTBlock& block, std::size_t indent);
/// What a part's file says of a subsystem, but for its contents and whether it is atomic.
void write_definition(Writing& writing, const GTBlock& block);
/// What a linked part is used with, in place of its contents.
void write_link(Writing& writing, const GTBlock& block, const GTBlock& fresh, const std::string& path,
                std::size_t indent);
void write_lines(Writing& writing, const host::System& system, std::size_t indent);

// --- for several of them

/// "Position", "Rotation" and "Mirror" as `at`, `rotate` and `mirror`. Other properties than these and `known` are
/// refused; those that a subsystem may have, being opaque, are added to `parameters`.
YamlEntries place_entries(Writing& writing, const GTBlock& block, const std::map<std::string, ustring>& known,
                          YamlEntries* parameters);
/// Parameters of a subsystem's mask that differ from those of `fresh`, or from the mask's defaults where it is null.
YamlEntries mask_values(Writing& writing, const GTBlock& block, const GTBlock* fresh);

}  // namespace kinemo::formats::diagram
