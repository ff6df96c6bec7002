#include "views/picture/net_labels.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

namespace kinemo::views::picture {

namespace {

using layout::Point;
using layout::Rectangle;
using layout::Size;

constexpr double half_line = 1.5;
constexpr double gap = 2.5;  ///< between a line and the name above it
constexpr std::size_t most_segments = 4;

bool overlap(const Rectangle& a, const Rectangle& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

/// What is drawn, by square cells, so that asking for a small rectangle is cheap.
class Occupied {
 public:
  void add(const Rectangle& it) {
    if (cell_count(it) > most_cells) {
      large_.push_back(it);
      return;
    }
    for_each_cell(it, [&](std::int64_t cell) {
      cells_[cell].push_back(it);
      return true;
    });
  }

  bool is_free(const Rectangle& it) const {
    const auto covers = [&](const Rectangle& other) { return overlap(it, other); };
    if (std::any_of(large_.begin(), large_.end(), covers)) return false;
    return for_each_cell(it, [&](std::int64_t cell) {
      const auto found = cells_.find(cell);
      return found == cells_.end() || std::none_of(found->second.begin(), found->second.end(), covers);
    });
  }

 private:
  static constexpr double side = 100;
  static constexpr double far = 1e7;  ///< what lies beyond shares the outermost cells

  static constexpr std::int64_t most_cells = 10'000;

  static std::int64_t index(double at) { return std::llround(std::floor(std::clamp(at, -far, far) / side)); }

  static std::int64_t cell_count(const Rectangle& it) {
    return (index(it.x + it.width) - index(it.x) + 1) * (index(it.y + it.height) - index(it.y) + 1);
  }

  /// Until `visit` says no; whether it never did.
  template <class Visit>
  static bool for_each_cell(const Rectangle& it, Visit visit) {
    for (std::int64_t x = index(it.x); x <= index(it.x + it.width); ++x) {
      for (std::int64_t y = index(it.y); y <= index(it.y + it.height); ++y) {
        if (!visit(x * 1'000'003 + y)) return false;
      }
    }
    return true;
  }

  std::unordered_map<std::int64_t, std::vector<Rectangle>> cells_;
  std::vector<Rectangle> large_;  ///< what covers too many cells
};

Rectangle around(const Point& a, const Point& b) {
  return {std::min(a.x, b.x) - half_line, std::min(a.y, b.y) - half_line, std::abs(a.x - b.x) + 2 * half_line,
          std::abs(a.y - b.y) + 2 * half_line};
}

Rectangle moved(const Rectangle& it, const Point& by) {
  return {it.x + by.x, it.y + by.y, it.width, it.height};
}

Occupied everything(const std::vector<layout::Box>& boxes, const layout::Drawing& drawing) {
  Occupied occupied;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const Point& corner = drawing.corners[i];
    occupied.add({corner.x, corner.y, boxes[i].size.width, boxes[i].size.height});
    for (const Rectangle& text : boxes[i].texts) occupied.add(moved(text, corner));
  }
  for (const layout::Route& route : drawing.routes) {
    for (const auto& line : route.lines) {
      for (std::size_t i = 1; i < line.size(); ++i) occupied.add(around(line[i - 1], line[i]));
    }
    for (const layout::Stub& stub : route.stubs) {
      occupied.add(around(stub.from, stub.end));
      occupied.add(stub.label);
    }
  }
  return occupied;
}

struct Segment {
  Point left;
  double length;
};

/// The longest horizontal ones that are no shorter than a length, from the longest on.
std::vector<Segment> horizontal_segments(const layout::Route& route, double least) {
  std::vector<Segment> found;
  for (const auto& line : route.lines) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const double length = std::abs(line[i].x - line[i - 1].x);
      if (line[i].y == line[i - 1].y && length >= least) {
        found.push_back({{std::min(line[i].x, line[i - 1].x), line[i].y}, length});
      }
    }
  }
  std::stable_sort(found.begin(), found.end(), [](const Segment& a, const Segment& b) { return a.length > b.length; });
  found.resize(std::min(found.size(), most_segments));
  return found;
}

boost::optional<Rectangle> free_place(const Occupied& occupied, const layout::Route& route, const Size& name) {
  for (const Segment& segment : horizontal_segments(route, name.width + 2 * gap)) {
    for (const double share : {0.5, 0.2, 0.8}) {
      const double x = segment.left.x + gap + share * (segment.length - name.width - 2 * gap);
      const Rectangle place{x, segment.left.y - name.height - gap, name.width, name.height};
      if (occupied.is_free(place)) return place;
    }
  }
  return boost::none;
}

}  // namespace

std::vector<boost::optional<Point>> place_net_labels(const std::vector<layout::Box>& boxes,
                                                     const layout::Drawing& drawing, const std::vector<Size>& names) {
  std::vector<boost::optional<Point>> places(names.size());
  Occupied occupied = everything(boxes, drawing);
  for (std::size_t net = 0; net < names.size(); ++net) {
    if (names[net].width <= 0) continue;
    const auto place = free_place(occupied, drawing.routes[net], names[net]);
    if (!place) continue;
    occupied.add(*place);
    places[net] = Point{place->x, place->y};
  }
  return places;
}

}  // namespace kinemo::views::picture
