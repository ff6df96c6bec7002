#pragma once

// One search for a line: the tracks of a window, what stands on them, and the cheapest way.

#include <optional>

#include "views/layout/scene.hpp"

namespace kinemo::views::layout {

/// From the outer end of a pin's leg to the lines of the net that are there already.
struct Search {
  Point from;
  Direction away = Direction::right;
  std::size_t net = no_net;
  std::vector<Point> ends;       ///< outer ends of the legs of pins that may be reached
  std::vector<Rectangle> lines;  ///< lines of the net that may be joined anywhere
  double step = grid_step;       ///< between tracks
};

struct Way {
  std::vector<Point> points;  ///< from the search's beginning to its end; corners only
  double cost = 0;
};

/// The cheapest way inside of the window: short, with few bends and crossings, and with air to other lines and boxes.
/// None, if there is none, or if the window is too large to be searched.
std::optional<Way> find_way(const Scene& scene, const Search& search, const Rectangle& window);

}  // namespace kinemo::views::layout
