// Places of names and values beside blocks that the user placed: the layout makes room for those of all others.
#pragma once

#include "views/picture/block_shape.hpp"

#include <vector>

namespace kinemo::views::picture {

/// Moves captions of placed blocks that would lie on other blocks or captions: the name breaks into two lines, is
/// shortened to the free room, or goes to another side of its block. I/O ports have theirs inside.
void place_captions(std::vector<BlockShape>& shapes, ShapeMaker& maker);

}  // namespace kinemo::views::picture
