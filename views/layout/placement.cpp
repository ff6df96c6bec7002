#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "views/layout/columns.hpp"
#include "views/layout/edge_boxes.hpp"
#include "views/layout/layers.hpp"

namespace kinemo::views::layout {

namespace {

constexpr double part_distance = 40;
constexpr double page_ratio = 4.0 / 3;
constexpr std::size_t no_piece = static_cast<std::size_t>(-1);

/// A part with its boxes in place, relative to its own corner.
struct Placed {
  std::vector<Point> corners;
  Size size;  ///< its width is that without the boxes of edges, which leave it
  EdgeGaps gaps;
};

double on_grid(double it) {
  return std::ceil(it / grid_step) * grid_step;
}

/// The rooms of those boxes of a part that go to an edge or of the others.
std::optional<Rectangle> room_of(const Problem& problem, const std::vector<Rectangle>& rooms, const Part& part,
                                 const std::vector<Point>& corners, Edge edge) {
  std::optional<Rectangle> all;
  for (std::size_t i = 0; i < part.boxes.size(); ++i) {
    if (problem.boxes[part.boxes[i]].edge != edge) continue;
    const Rectangle room = moved(rooms[part.boxes[i]], corners[i]);
    all = all ? united(*all, room) : room;
  }
  return all;
}

Placed place(const Problem& problem, const std::vector<Rectangle>& rooms, const Part& part) {
  Placed result;
  result.corners = corners_in_columns(
      problem, rooms, part, part.boxes.size() == 1 ? std::vector<Cell>(1) : layered_cells(problem, rooms, part));
  const Rectangle inner = *room_of(problem, rooms, part, result.corners, Edge::none);
  Rectangle all = inner;
  if (const auto left = room_of(problem, rooms, part, result.corners, Edge::left)) {
    result.gaps.left = inner.x - right(*left);
    all = united(all, *left);
  }
  if (const auto at_right = room_of(problem, rooms, part, result.corners, Edge::right)) {
    result.gaps.right = at_right->x - right(inner);
    all = united(all, *at_right);
  }
  const Point origin{std::floor(inner.x / grid_step) * grid_step, std::floor(all.y / grid_step) * grid_step};
  for (Point& it : result.corners) it = {it.x - origin.x, it.y - origin.y};
  result.size = {on_grid(right(inner) - origin.x), on_grid(bottom(all) - origin.y)};
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

/// Parts too large for one picture become several, which stand beside each other; what joins them is mostly told by
/// names.
std::vector<Part> pieces_of(const Problem& problem, std::vector<Part> parts) {
  std::vector<Part> pieces;
  std::reverse(parts.begin(), parts.end());
  while (!parts.empty()) {
    Part part = std::move(parts.back());
    parts.pop_back();
    if (part.boxes.size() == 1 || bearable_for_layers(problem, part)) {
      pieces.push_back(std::move(part));
      continue;
    }
    auto [first, second] = halves_of(part);
    parts.push_back(std::move(second));
    parts.push_back(std::move(first));
  }
  return pieces;
}

/// By box: the piece that it is in; none for those that the user placed.
std::vector<std::size_t> pieces_by_box(const Problem& problem, const std::vector<Part>& pieces) {
  std::vector<std::size_t> piece_of(problem.boxes.size(), no_piece);
  for (std::size_t piece = 0; piece < pieces.size(); ++piece) {
    for (std::size_t box : pieces[piece].boxes) piece_of[box] = piece;
  }
  return piece_of;
}

bool is_cut(const Net& net, const std::vector<std::size_t>& piece_of) {
  std::size_t first = no_piece;
  for (PinRef it : net.pins) {
    const std::size_t piece = piece_of[it.box];
    if (piece == no_piece || piece == first) continue;
    if (first != no_piece) return true;
    first = piece;
  }
  return false;
}

void add_room_for_cut_nets(const Problem& problem, const std::vector<Part>& pieces, std::vector<Rectangle>& rooms) {
  const std::vector<std::size_t> piece_of = pieces_by_box(problem, pieces);
  for (const Net& net : problem.nets) {
    if (!is_cut(net, piece_of)) continue;
    for (PinRef it : net.pins) add_stub_room(problem, it, net.label, rooms[it.box]);
  }
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
  Problem input = tidy(problem);
  std::vector<Rectangle> rooms = footprints(input);
  std::vector<Part> parts = pieces_of(input, parts_of(input));
  add_room_for_cut_nets(input, parts, rooms);
  std::erase_if(parts, [&](const Part& it) { return is_of_edges(input, it); });
  std::vector<Placed> placed;
  for (const Part& it : parts) placed.push_back(place(input, rooms, it));
  std::vector<bool> has_height(input.boxes.size());
  EdgeGaps gaps;
  const std::vector<Point> origins = rows_of(placed, free_corner(input, rooms));
  for (std::size_t i = 0; i < parts.size(); ++i) {
    for (std::size_t k = 0; k < parts[i].boxes.size(); ++k) {
      const Point corner = placed[i].corners[k];
      input.boxes[parts[i].boxes[k]].corner = {origins[i].x + corner.x, origins[i].y + corner.y};
      has_height[parts[i].boxes[k]] = true;
    }
    gaps.left = std::max(gaps.left, placed[i].gaps.left);
    gaps.right = std::max(gaps.right, placed[i].gaps.right);
  }
  move_to_edges(input, rooms, std::move(has_height), gaps);
  for (std::size_t i = 0; i < input.boxes.size(); ++i) {
    if (!input.boxes[i].fixed) problem.boxes[i].corner = input.boxes[i].corner;
  }
}

}  // namespace kinemo::views::layout
