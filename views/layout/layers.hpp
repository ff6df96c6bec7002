#pragma once

// Columns for the boxes of a part.

#include "views/layout/parts.hpp"

namespace kinemo::views::layout {

/// By Graphviz' dot, from right pins to left ones. If Graphviz fails, a plain grid.
std::vector<Cell> layered_cells(const Problem& problem, const std::vector<Rectangle>& footprints, const Part& part);

/// Whether dot can do it in a fraction of a second.
bool bearable_for_layers(const Problem& problem, const Part& part);

}  // namespace kinemo::views::layout
