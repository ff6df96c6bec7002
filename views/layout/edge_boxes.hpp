#pragma once

// Boxes that stand at the left and right edge of everything.

#include "views/layout/parts.hpp"

namespace kinemo::views::layout {

/// A box that the layout puts to an edge.
bool goes_to_edge(const Box& box);

/// A part whose boxes all go to edges; they aren't laid out with others.
bool is_of_edges(const Problem& problem, const Part& part);

/// Distances between the columns of the edges and all else.
struct EdgeGaps {
  double left = 40;
  double right = 40;
};

/// Moves boxes of edges out of all others, which have their places: in the order of the heights that they have, where
/// `has_height` says so by box, else as high as what they are joined to, and the rest below.
void move_to_edges(Problem& problem, const std::vector<Rectangle>& footprints, std::vector<bool> has_height,
                   EdgeGaps gaps);

}  // namespace kinemo::views::layout
