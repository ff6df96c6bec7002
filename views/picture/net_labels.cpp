#include "views/picture/net_labels.hpp"

#include "views/layout/scene.hpp"

#include <algorithm>
#include <cmath>

namespace kinemo::views::picture {

namespace {

using layout::Point;
using layout::Rectangle;
using layout::Size;

constexpr double half_line = 1.5;
constexpr double gap = 2.5;  ///< between a line and the name above it
constexpr std::size_t most_segments = 4;

Rectangle around(const Point& a, const Point& b) {
  return layout::grown(layout::spanned(a, b), half_line);
}

layout::Scene everything(const std::vector<layout::Box>& boxes, const layout::Drawing& drawing) {
  layout::Scene scene;
  const auto add = [&](const Rectangle& room) { scene.add({layout::Kind::text, room}); };
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const Point& corner = drawing.corners[i];
    add({corner.x, corner.y, boxes[i].size.width, boxes[i].size.height});
    for (const Rectangle& text : boxes[i].texts) add(layout::moved(text, corner));
  }
  for (const layout::Route& route : drawing.routes) {
    for (const auto& line : route.lines) {
      for (std::size_t i = 1; i < line.size(); ++i) add(around(line[i - 1], line[i]));
    }
    for (const layout::Stub& stub : route.stubs) {
      add(around(stub.from, stub.end));
      add(stub.label);
    }
  }
  return scene;
}

bool is_free(const layout::Scene& scene, const Rectangle& place) {
  const std::vector<std::size_t> near = scene.near(place);
  return std::none_of(near.begin(), near.end(),
                      [&](std::size_t thing) { return layout::overlap(scene[thing].room, place); });
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

boost::optional<Rectangle> free_place(const layout::Scene& scene, const layout::Route& route, const Size& name) {
  for (const Segment& segment : horizontal_segments(route, name.width + 2 * gap)) {
    for (const double share : {0.5, 0.2, 0.8}) {
      const double x = segment.left.x + gap + share * (segment.length - name.width - 2 * gap);
      const Rectangle place{x, segment.left.y - name.height - gap, name.width, name.height};
      if (is_free(scene, place)) return place;
    }
  }
  return boost::none;
}

}  // namespace

std::vector<boost::optional<Point>> place_net_labels(const std::vector<layout::Box>& boxes,
                                                     const layout::Drawing& drawing, const std::vector<Size>& names) {
  std::vector<boost::optional<Point>> places(names.size());
  layout::Scene scene = everything(boxes, drawing);
  for (std::size_t net = 0; net < names.size(); ++net) {
    if (names[net].width <= 0) continue;
    const auto place = free_place(scene, drawing.routes[net], names[net]);
    if (!place) continue;
    scene.add({layout::Kind::text, *place});
    places[net] = Point{place->x, place->y};
  }
  return places;
}

}  // namespace kinemo::views::picture
