#pragma once

#include "views/layout/parts.hpp"

namespace kinemo::views::layout {

/// Corners of the boxes of a part on the grid, by its boxes. Columns stand as far apart as the lines between them need,
/// and no two footprints of a column meet. A long strip is folded into rows, as a text is into lines.
std::vector<Point> corners_in_columns(const Problem& problem, const std::vector<Rectangle>& footprints,
                                      const Part& part, const std::vector<Cell>& cells);

}  // namespace kinemo::views::layout
