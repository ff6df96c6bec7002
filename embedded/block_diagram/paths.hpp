#pragma once

// Full paths of blocks: names joined by "/", a "/" inside a name doubled. A line feed in a name reads as a blank, so a
// path finds its block whether or not its line feeds have been replaced.

#include "platform/foundation/ustring.hpp"

#include <cstddef>
#include <string_view>
#include <vector>

class GTBlock;
class GantrelObject;

namespace embedded::block_diagram {

class System;

/// The name with every "/" doubled.
ustring escapedName(const ustring& name);
/// Names of a path. Slashes are paired from the end, as whoever writes paths back to front does.
std::vector<ustring> splitPath(const ustring& path);
/// Path of a block, or of the diagram when `block` is null; names as they stand.
ustring fullPath(const System* system, const GTBlock* block);

/// Below `top`, the block of a path; null when there is none.
GTBlock* findBelow(const System& top, const ustring& path);
/// The block or diagram of a full path in any open diagram; null when there is none.
GantrelObject* findByPath(const ustring& path);

/// Where a path ends that leads to no block.
struct DeadEnd {
  const System* system = nullptr;   ///< the innermost system on the path
  std::size_t name = 0;             ///< the first name that leads nowhere
  const GTBlock* closed = nullptr;  ///< the block in front of that name where it has nothing inside
};
/// Of the names from `first` on, below `top`.
DeadEnd deadEnd(const System& top, const std::vector<ustring>& names, std::size_t first);

/// Hash and equality of names in one system: a line feed and a blank are the same.
struct NameHash {
  std::size_t operator()(std::u16string_view name) const noexcept;
};
bool sameName(std::u16string_view a, std::u16string_view b) noexcept;

}  // namespace embedded::block_diagram
