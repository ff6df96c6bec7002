#pragma once

// Columns for the boxes of a part: by dot for parts of ordinary size, on a plain grid for huge ones.

#include <optional>

#include "views/layout/parts.hpp"

namespace kinemo::views::layout {

/// By Graphviz' dot, from right pins to left ones. Nothing, if Graphviz fails.
std::optional<std::vector<Cell>> layered_cells(const Problem& problem, const std::vector<Rectangle>& footprints,
                                               const Part& part);

/// On a grid of about 4:3, by halving the part again and again so that few nets are cut. In n log n for n pins.
std::vector<Cell> grid_cells(const std::vector<Rectangle>& footprints, const Part& part);

}  // namespace kinemo::views::layout
