#pragma once

// Places of blocks and lines in the picture of one system. Pure geometry: no host, no drawing but its shapes. Lengths
// are in units of the diagram, x grows to the right and y downward.

#include "embedded/drawing/geometry.hpp"

#include <cstddef>
#include <vector>

namespace kinemo::views::layout {

using embedded::drawing::Point;
using embedded::drawing::Rectangle;
using embedded::drawing::Size;

enum class Direction { left, right, up, down };

/// Where a line meets a box: a point of its edge, and the direction in which the line leaves.
struct Pin {
  Point at;  ///< relative to the box's corner
  Direction away = Direction::left;
};

enum class Edge { none, left, right };

/// A block with all that no line may cross.
struct Box {
  Point corner;  ///< upper left; where the box isn't fixed, the layout sets it
  Size size;
  bool fixed = false;      ///< the user placed it
  Edge edge = Edge::none;  ///< where it isn't fixed, it stands left (right) of all others; its pins look inward
  std::vector<Pin> pins;
  std::vector<Rectangle> texts;  ///< name and labels outside of the box, relative to its corner
};

struct PinRef {
  std::size_t box = 0;
  std::size_t pin = 0;
};

/// Pins that are one node in this system. One pin alone is an end that nothing joins, and gets no route but the stub of
/// a net with a name.
struct Net {
  std::vector<PinRef> pins;
  Size label;      ///< room for its name, where a stub stands for its line
  Size name = {};  ///< of its name beside its lines, if the user named it; boxes that the layout places keep room for it
};

struct Problem {
  std::vector<Box> boxes;
  std::vector<Net> nets;
};

/// A pin that names its net instead of being joined by a line: a short line from the pin, and room for the name at its
/// end or beside it. In narrow gaps it has no length.
struct Stub {
  PinRef pin;
  Point from;
  Point end;
  Direction away = Direction::left;
  Rectangle label;
};

/// How one net is drawn. Lines of different nets cross at most, and never run on top of each other.
struct Route {
  std::vector<std::vector<Point>> lines;  ///< each segment is horizontal or vertical
  std::vector<Point> dots;                ///< where three lines of the net or more meet
  std::vector<Stub> stubs;
};

struct Drawing {
  std::vector<Point> corners;  ///< by box
  std::vector<Route> routes;   ///< by net
  Rectangle bounds;            ///< of everything, texts and labels included
};

/// Places the boxes that aren't fixed, so that lines seldom cross and mostly run from right pins to left ones; those
/// that are fixed stay. No two boxes that it places overlap anything. The same problem gives the same drawing.
void place_boxes(Problem& problem);

/// Draws the nets around boxes that have their places. Where there is no way, the pins of the net get stubs.
Drawing route_nets(const Problem& problem);

/// Both.
Drawing lay_out(Problem problem);

}  // namespace kinemo::views::layout
