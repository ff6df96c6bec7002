#include "common/gl/gti/src/kernel/translation/level_tree.hpp"

#include "common/gl/gti/src/kernel/block_model/path_text.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace gl::gti {

LevelTree::LevelTree() {
  levels_.emplace_back();
  byPath_.emplace(std::u16string_view(), &levels_.front());
}

void LevelTree::add(const boost::shared_ptr<BlockEntryData>& entry, const ComponentEmbedding& embedding) {
  const auto [parent, name] = split_last(rest_text(entry->path()));
  levelAt(parent).blocks.push_back(std::make_unique<PendingBlock>(PendingBlock{entry, embedding, name}));
  empty_ = false;
}

Level& LevelTree::levelAt(std::u16string_view path) {
  std::vector<std::pair<std::u16string_view, std::u16string_view>> missing;  // path and name, the innermost first
  auto found = byPath_.find(path);
  for (; found == byPath_.end(); found = byPath_.find(path)) {
    const auto [parent, name] = split_last(path);
    missing.emplace_back(path, name);
    path = parent;
  }
  Level* level = found->second;
  for (auto at = missing.rbegin(); at != missing.rend(); ++at) {
    Level& inner = levels_.emplace_back();
    inner.parent = level;
    inner.name = at->second;
    inner.path = at->first;
    inner.depth = level->depth + 1;
    level->children.push_back(&inner);
    byPath_.emplace(inner.path, &inner);
    level = &inner;
  }
  return *level;
}

std::vector<Level*> LevelTree::deepestFirst() {
  // Breadth first with sorted children gives the levels by rising depth, and those of one depth by path.
  std::vector<Level*> order{&levels_.front()};
  for (std::size_t i = 0; i < order.size(); ++i) {
    std::vector<Level*>& children = order[i]->children;
    std::sort(children.begin(), children.end(), [](const Level* a, const Level* b) { return a->name < b->name; });
    order.insert(order.end(), children.begin(), children.end());
  }
  std::stable_sort(order.begin(), order.end(), [](const Level* a, const Level* b) { return a->depth > b->depth; });
  moveNamesakes(order);
  return order;
}

/// What waits at a system's depth lies in the systems around it, and is what became of other systems of its depth. So
/// only an only system of its depth can have its namesake right behind its blocks, and only when the system around it
/// is the first of all that hold blocks there.
void LevelTree::moveNamesakes(const std::vector<Level*>& order) {
  for (std::size_t i = 0; i + 1 < order.size(); ++i) {
    Level& level = *order[i];
    const bool isFirst = i == 0 || order[i - 1]->depth != level.depth;
    if (isFirst && order[i + 1] == level.parent) moveNamesakesInto(level);
  }
}

void LevelTree::moveNamesakesInto(Level& level) {
  auto& waiting = level.parent->blocks;
  for (const auto& block : waiting) {
    if (!block->name.empty() && block->name < level.name) return;
  }
  const auto namesakes = std::stable_partition(waiting.begin(), waiting.end(),
                                               [&](const auto& block) { return block->name != level.name; });
  for (auto at = namesakes; at != waiting.end(); ++at) {
    (*at)->name = {};
    level.blocks.push_back(std::move(*at));
  }
  waiting.erase(namesakes, waiting.end());
}

void LevelTree::sortBlocks(Level& level) {
  // A block without a name has the path of the system itself and comes last.
  const auto before = [](const auto& a, const auto& b) {
    return a->name.empty() != b->name.empty() ? b->name.empty() : a->name < b->name;
  };
  const auto same = [](const auto& a, const auto& b) { return a->name == b->name; };
  auto& blocks = level.blocks;
  std::stable_sort(blocks.begin(), blocks.end(), before);
  blocks.erase(std::unique(blocks.begin(), blocks.end(), same), blocks.end());
}

}  // namespace gl::gti
