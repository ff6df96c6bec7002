#pragma once

// Rectangles, directions and tidy input, for placement and routing alike.

#include "views/layout/layout.hpp"

#include <cmath>

namespace kinemo::views::layout {

/// Corners of boxes that the layout places are multiples of this, and so are lines where pins don't say otherwise.
inline constexpr double grid_step = 10;

/// The nearest line of the grid.
inline double snapped(double it) {
  return std::round(it / grid_step) * grid_step;
}

/// A line runs this far from its pin before it bends, where there is room.
inline constexpr double leg_length = 10;
/// Between the rooms of columns at least.
inline constexpr double column_distance = 20;
/// Of the line of a stub, and between its end and the name.
inline constexpr double stub_length = 15;
inline constexpr double stub_gap = 2;

inline double right(const Rectangle& it) {
  return it.x + it.width;
}
inline double bottom(const Rectangle& it) {
  return it.y + it.height;
}

inline bool horizontal(Direction it) {
  return it == Direction::left || it == Direction::right;
}
Point moved(Point from, Direction along, double by);
Rectangle moved(const Rectangle& it, Point by);
Rectangle grown(const Rectangle& it, double by);
Rectangle united(const Rectangle& a, const Rectangle& b);
Rectangle spanned(Point a, Point b);
/// Whether the insides meet; an edge in common doesn't count.
bool overlap(const Rectangle& a, const Rectangle& b);
double distance(Point a, Point b);  ///< along the axes

/// The line without points that it runs straight through, and without repeated ones.
std::vector<Point> corners_of(const std::vector<Point>& line);

Rectangle outline(const Box& box);
Point place_of(const Problem& problem, PinRef pin);
const Pin& pin_of(const Problem& problem, PinRef pin);

/// The name beyond the end of a stub.
Rectangle stub_label(Point end, Direction away, Size label);

/// A box with its texts, relative to its corner.
Rectangle extent(const Box& box);

/// The same with all numbers finite and of bearable size, no negative widths and heights, no pin twice in a net, and no
/// reference to a pin that doesn't exist.
Problem tidy(const Problem& problem);

/// Whether names at the pins stand for the lines of a net: for one of many pins, as for a ground, that couldn't be
/// followed, and for one with a name and a single pin. What the user placed may have larger nets, as the user sees to
/// their lines.
class StubRule {
 public:
  explicit StubRule(const Problem& problem);
  bool operator()(const Net& net) const {
    const bool names_one_pin = net.pins.size() == 1 && net.name.width > 0;
    return names_one_pin || net.pins.size() > most_pins_;
  }

 private:
  static constexpr std::size_t most_pins_of_lines = 9;
  static constexpr std::size_t most_pins_of_lines_where_all_is_fixed = 30;
  std::size_t most_pins_;
};

}  // namespace kinemo::views::layout
