#pragma once

// The systems of a model that hold physical blocks, and the blocks that wait in each of them to become part of its
// graph. Lives for one compile. Texts are views of the paths of the leaf entries, which must outlive the tree.

#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "common/gl/gti/src/kernel/translation/port_substitutions.hpp"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <deque>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace gl::gti {

/// A block whose component is made and which waits for its system's turn.
struct PendingBlock {
  boost::shared_ptr<BlockEntryData> entry;
  ComponentEmbedding embedding;
  std::u16string_view name;  ///< within its system
  PortSubstitutions::Time since = 0;
};

/// One system: the model itself or a subsystem.
struct Level {
  Level* parent = nullptr;   ///< null for the model itself
  std::u16string_view name;  ///< of the subsystem in its parent
  std::u16string_view path;  ///< of the subsystem, without the model's name
  std::size_t depth = 0;     ///< number of systems around it
  std::vector<Level*> children;
  std::vector<std::unique_ptr<PendingBlock>> blocks;
};

class LevelTree {
 public:
  LevelTree();
  LevelTree(const LevelTree&) = delete;
  LevelTree& operator=(const LevelTree&) = delete;

  /// Adds a leaf block under its path. Of blocks with one path the first stays.
  void add(const boost::shared_ptr<BlockEntryData>& entry, const ComponentEmbedding& embedding);
  bool empty() const { return empty_; }
  Level& root() { return levels_.front(); }

  /// All systems, the deepest first and those of one depth by path: every system stands before its parent. A path
  /// compares by its components, as `BlockPath` does. To be called once all blocks are added.
  ///
  /// A leaf may have the path of a system. Where it comes right behind the system's blocks in the order of paths, it is
  /// moved in there, as a block without a name. Elsewhere it stays, and the system's own block will give way to it.
  std::vector<Level*> deepestFirst();
  /// Brings a system's blocks into the order of their names, one without a name last, and drops all but the first of
  /// one name.
  static void sortBlocks(Level& level);

 private:
  Level& levelAt(std::u16string_view path);
  static void moveNamesakes(const std::vector<Level*>& order);
  static void moveNamesakesInto(Level& level);

  std::deque<Level> levels_;
  std::unordered_map<std::u16string_view, Level*> byPath_;
  bool empty_ = true;
};

}  // namespace gl::gti
