#include "views/picture/io_places.hpp"

#include "embedded/block_diagram/diagram.hpp"

#include <algorithm>
#include <limits>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;

namespace {

constexpr double distance = 60;
constexpr double row = 30;
constexpr double infinity = std::numeric_limits<double>::infinity();

struct Extent {
  double left = 0;
  double right = 0;
  double top = 0;
};

bool is_open(const BlockShape& shape) {
  return host::isIoPort(*shape.block) && !shape.box.fixed;
}

/// Of the placed shapes.
Extent extent(const std::vector<BlockShape>& shapes) {
  Extent all{infinity, -infinity, infinity};
  for (const BlockShape& shape : shapes) {
    if (!shape.box.fixed) continue;
    all.left = std::min(all.left, shape.box.corner.x);
    all.right = std::max(all.right, shape.box.corner.x + shape.box.size.width);
    all.top = std::min(all.top, shape.box.corner.y);
  }
  return all;
}

/// The height of the first placed pin on the net of each open port; `otherwise` for a port without one.
std::vector<double> wanted_heights(const std::vector<BlockShape>& shapes, const std::vector<layout::Net>& nets,
                                   double otherwise) {
  std::vector<double> heights(shapes.size(), otherwise);
  for (const layout::Net& net : nets) {
    const auto placed = std::find_if(net.pins.begin(), net.pins.end(),
                                     [&](const layout::PinRef& pin) { return shapes[pin.box].box.fixed; });
    if (placed == net.pins.end()) continue;
    const layout::Box& box = shapes[placed->box].box;
    for (const layout::PinRef& pin : net.pins) heights[pin.box] = box.corner.y + box.pins[placed->pin].at.y;
  }
  return heights;
}

/// Puts the ports of one side below each other, in the order of the heights that they want.
void stack(std::vector<BlockShape>& shapes, std::vector<std::size_t> side, const std::vector<double>& heights,
           double edge, bool left) {
  std::stable_sort(side.begin(), side.end(), [&](std::size_t a, std::size_t b) { return heights[a] < heights[b]; });
  double free = -infinity;
  for (const std::size_t i : side) {
    layout::Box& box = shapes[i].box;
    const double y = std::max(heights[i] - box.size.height / 2, free);
    box.corner = {left ? edge - distance - box.size.width : edge + distance, y};
    free = y + row;
  }
  for (const std::size_t i : side) shapes[i].box.fixed = true;
}

}  // namespace

void place_io_ports(std::vector<BlockShape>& shapes, const std::vector<layout::Net>& nets) {
  std::vector<std::size_t> sides[2];
  for (BlockShape& it : shapes) {
    if (is_open(it)) it.box.edge = points_right(*it.block) ? layout::Edge::left : layout::Edge::right;
  }
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    if (is_open(shapes[i])) {
      sides[points_right(*shapes[i].block) ? 0 : 1].push_back(i);
    } else if (!shapes[i].box.fixed) {
      return;
    }
  }
  if (sides[0].size() + sides[1].size() == shapes.size()) return;
  const Extent all = extent(shapes);
  const std::vector<double> heights = wanted_heights(shapes, nets, all.top);
  stack(shapes, sides[0], heights, all.left, true);
  stack(shapes, sides[1], heights, all.right, false);
}

}  // namespace kinemo::views::picture
