#pragma once

// Connected parts of a system, each of which is laid out for itself.

#include <utility>
#include <vector>

#include "views/layout/geometry.hpp"

namespace kinemo::views::layout {

/// Boxes to be placed that lines join, and those lines.
struct Part {
  std::vector<std::size_t> boxes;         ///< of the problem, ascending
  std::vector<std::vector<PinRef>> nets;  ///< two pins or more; a pin's box is the index in `boxes`
};

/// Where a box of a part stands: columns count from left to right.
struct Cell {
  std::size_t column = 0;
  double top = 0;  ///< of its footprint
};

/// The room that each box needs, relative to its corner: texts, names at stubs, and the beginnings of lines.
std::vector<Rectangle> footprints(const Problem& problem);

/// Makes room for a name at the pin.
void add_stub_room(const Problem& problem, PinRef pin, Size label, Rectangle& footprint);

/// The parts of the boxes that aren't fixed. Nets that names stand for join nothing.
std::vector<Part> parts_of(const Problem& problem);

/// The part in two, of boxes that are near each other along its nets. A net that is cut joins the pins in each half.
std::pair<Part, Part> halves_of(const Part& part);

}  // namespace kinemo::views::layout
