// Systems one inside the other, written without recursion.

#include "embedded/block_diagram/block_data.hpp"
#include "formats/diagram/linked_parts.hpp"
#include "formats/diagram/writing.hpp"
#include "formats/diagram/yaml_tree.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::diagram {

namespace {

/// Collections that a block or a line has inside of the collections around it, at the most.
constexpr std::size_t deepest_inside = 5;

/// A system that is being written.
struct OpenSystem {
  const host::System* system;
  std::size_t indent;   ///< of the keys "blocks", "variant" and "lines"
  std::size_t nesting;  ///< collections of YAML around these keys
  std::size_t next = 0;
  bool opened = false;  ///< whether the key in front of the blocks has been written

  bool is_variant() const { return system->owner() != nullptr && host::isVariant(*system->owner()); }
  /// Of the keys of blocks.
  std::size_t block_indent() const { return indent + (is_variant() ? 4 : 2); }
  std::size_t block_nesting() const { return nesting + (is_variant() ? 2 : 1); }
};

void open_blocks(Writing& writing, OpenSystem& at) {
  if (at.opened) return;
  at.opened = true;
  if (!at.is_variant()) return writing.open(at.indent, "blocks");
  const GTBlock& variant = *at.system->owner();
  writing.open(at.indent, "variant");
  writing.entry(at.indent + 2, "active", writing.name(&variant, variant.host().subsystem()->activeVariant));
  writing.open(at.indent + 2, "choices");
}

void check_variant(Writing& writing, const host::System& system) {
  const GTBlock& variant = *system.owner();
  if (host::activeChoice(variant) == nullptr) {
    writing.refuse(&variant, "the variant's parameter 'ActiveVariant' names none of its choices",
                   "the name of a subsystem inside of it");
  }
  if (!system.lines().empty()) {
    writing.refuse(&variant, "there are lines between the choices of a variant, where a file has no place for them");
  }
}

void close_system(Writing& writing, OpenSystem& at) {
  if (at.is_variant()) {
    open_blocks(writing, at);
    check_variant(writing, *at.system);
  } else {
    write_lines(writing, *at.system, at.indent);
  }
}

/// The next block that isn't an I/O port; null at the end.
const GTBlock* next_block(OpenSystem& at) {
  const std::vector<GTBlock*>& blocks = at.system->blocks();
  while (at.next < blocks.size() && host::isIoPort(*blocks[at.next])) ++at.next;
  return at.next < blocks.size() ? blocks[at.next++] : nullptr;
}

void refuse_depth(Writing& writing, const GTBlock& block) {
  writing.refuse(&block,
                 "the block lies too deep for a file, which may be nested " + std::to_string(YamlTree::depth_limit) +
                     " levels deep",
                 "subsystems that link to files of their own", "diagram:too-deep");
}

/// A block that has no systems in it that are still to be written.
bool write_closed_block(Writing& writing, const OpenSystem& at, const GTBlock& block) {
  if (!host::isSubsystem(block)) {
    if (at.is_variant()) writing.refuse(&block, "a choice of a variant is a subsystem, and this is none");
    write_library_block(writing, block, at.block_indent());
    return true;
  }
  const GTBlock* fresh = writing.parts != nullptr ? writing.parts->unchanged(block) : nullptr;
  if (fresh == nullptr) return false;
  write_link(writing, block, *fresh, writing.parts->path(block), at.block_indent());
  return true;
}

}  // namespace

void write_systems(Writing& writing, const host::System& top, std::size_t indent, std::size_t nesting) {
  std::vector<OpenSystem> open{{&top, indent, nesting}};
  while (!open.empty()) {
    OpenSystem& at = open.back();
    const GTBlock* block = next_block(at);
    if (block == nullptr) {
      close_system(writing, at);
      open.pop_back();
      continue;
    }
    open_blocks(writing, at);
    if (at.block_nesting() + deepest_inside > YamlTree::depth_limit) return refuse_depth(writing, *block);
    if (write_closed_block(writing, at, *block)) continue;
    write_subsystem_head(writing, *block, at.block_indent());
    open.push_back({host::contents(*block), at.block_indent() + 2, at.block_nesting() + 1});
  }
}

}  // namespace kinemo::formats::diagram
