#pragma once

// Places and extents in units of the diagram: x grows to the right and y downward.

namespace embedded::drawing {

struct Point {
  double x = 0;
  double y = 0;
};

struct Size {
  double width = 0;
  double height = 0;
};

struct Rectangle {
  double x = 0;  ///< of the upper left corner
  double y = 0;
  double width = 0;
  double height = 0;
};

}  // namespace embedded::drawing
