#include <algorithm>
#include <cmath>
#include <numeric>

#include "views/layout/columns.hpp"
#include "views/layout/layers.hpp"

namespace kinemo::views::layout {

namespace {

/// Beyond, dot takes seconds, and nobody can follow a picture of its long lines.
constexpr std::size_t most_boxes_for_dot = 400;
constexpr double part_distance = 40;
constexpr double page_ratio = 4.0 / 3;

/// A part with its boxes in place, relative to its own corner.
struct Placed {
  std::vector<Point> corners;
  Size size;
};

std::vector<Cell> cells_of(const Problem& problem, const std::vector<Rectangle>& rooms, const Part& part) {
  if (part.boxes.size() == 1) return {Cell{}};
  if (part.boxes.size() <= most_boxes_for_dot) {
    if (auto cells = layered_cells(problem, rooms, part)) return *std::move(cells);
  }
  return grid_cells(rooms, part);
}

double on_grid(double it) {
  return std::ceil(it / grid_step) * grid_step;
}

Placed place(const Problem& problem, const std::vector<Rectangle>& rooms, const Part& part) {
  Placed result;
  result.corners = corners_in_columns(problem, rooms, part, cells_of(problem, rooms, part));
  Rectangle all = moved(rooms[part.boxes[0]], result.corners[0]);
  for (std::size_t i = 1; i < part.boxes.size(); ++i) {
    all = united(all, moved(rooms[part.boxes[i]], result.corners[i]));
  }
  const Point origin{std::floor(all.x / grid_step) * grid_step, std::floor(all.y / grid_step) * grid_step};
  for (Point& it : result.corners) it = {it.x - origin.x, it.y - origin.y};
  result.size = {on_grid(right(all) - origin.x), on_grid(bottom(all) - origin.y)};
  return result;
}

/// Wide enough for the widest part, else so that the rows make a page.
double page_width(const std::vector<Placed>& parts) {
  double widest = 0;
  double area = 0;
  for (const Placed& it : parts) {
    widest = std::max(widest, it.size.width);
    area += (it.size.width + part_distance) * (it.size.height + part_distance);
  }
  return std::max(widest, std::sqrt(area * page_ratio));
}

/// Rows from the highest part to the lowest; parts of equal height keep their order.
std::vector<Point> rows_of(const std::vector<Placed>& parts, Point origin) {
  std::vector<std::size_t> order(parts.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return parts[a].size.height > parts[b].size.height; });
  std::vector<Point> result(parts.size());
  const double end = origin.x + page_width(parts);
  Point next = origin;
  double row_height = 0;
  for (std::size_t i : order) {
    if (next.x > origin.x && next.x + parts[i].size.width > end) {
      next = {origin.x, next.y + row_height + part_distance};
      row_height = 0;
    }
    result[i] = next;
    next.x += parts[i].size.width + part_distance;
    row_height = std::max(row_height, parts[i].size.height);
  }
  return result;
}

/// Below what the user placed, or on its right where that is high.
Point free_corner(const Problem& problem, const std::vector<Rectangle>& rooms) {
  bool any = false;
  Rectangle all;
  for (std::size_t i = 0; i < rooms.size(); ++i) {
    if (!problem.boxes[i].fixed) continue;
    const Rectangle room = moved(rooms[i], problem.boxes[i].corner);
    all = any ? united(all, room) : room;
    any = true;
  }
  if (!any) return {};
  if (all.width >= all.height) return {on_grid(all.x), on_grid(bottom(all) + part_distance)};
  return {on_grid(right(all) + part_distance), on_grid(all.y)};
}

}  // namespace

void place_boxes(Problem& problem) {
  const Problem input = tidy(problem);
  const std::vector<Rectangle> rooms = footprints(input);
  const std::vector<Part> parts = parts_of(input);
  std::vector<Placed> placed;
  for (const Part& it : parts) placed.push_back(place(input, rooms, it));
  const std::vector<Point> origins = rows_of(placed, free_corner(input, rooms));
  for (std::size_t i = 0; i < parts.size(); ++i) {
    for (std::size_t k = 0; k < parts[i].boxes.size(); ++k) {
      const Point corner = placed[i].corners[k];
      problem.boxes[parts[i].boxes[k]].corner = {origins[i].x + corner.x, origins[i].y + corner.y};
    }
  }
}

}  // namespace kinemo::views::layout
