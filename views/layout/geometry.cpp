#include "views/layout/geometry.hpp"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace kinemo::views::layout {

namespace {

constexpr double most_coordinate = 1e7;
constexpr double most_size = 5e4;

double bounded(double value, double least, double most) {
  return std::isfinite(value) ? std::clamp(value, least, most) : 0;
}

Point bounded(Point it, double most) {
  return {bounded(it.x, -most, most), bounded(it.y, -most, most)};
}

Size bounded(Size it) {
  return {bounded(it.width, 0, most_size), bounded(it.height, 0, most_size)};
}

Rectangle bounded(const Rectangle& it) {
  const Point corner = bounded(Point{it.x, it.y}, most_size);
  const Size size = bounded(Size{it.width, it.height});
  return {corner.x, corner.y, size.width, size.height};
}

void tidy(Box& box) {
  box.corner = bounded(box.corner, most_coordinate);
  box.size = bounded(box.size);
  for (Pin& pin : box.pins) pin.at = bounded(pin.at, most_size);
  for (Rectangle& text : box.texts) text = bounded(text);
}

void tidy(Net& net, const std::vector<Box>& boxes) {
  net.label = bounded(net.label);
  net.name = bounded(net.name);
  std::set<std::pair<std::size_t, std::size_t>> seen;
  std::erase_if(net.pins, [&](PinRef it) {
    return it.box >= boxes.size() || it.pin >= boxes[it.box].pins.size() || !seen.insert({it.box, it.pin}).second;
  });
}

}  // namespace

Point moved(Point from, Direction along, double by) {
  switch (along) {
    case Direction::left:
      return {from.x - by, from.y};
    case Direction::right:
      return {from.x + by, from.y};
    case Direction::up:
      return {from.x, from.y - by};
    case Direction::down:
      return {from.x, from.y + by};
  }
  return from;
}

Rectangle moved(const Rectangle& it, Point by) {
  return {it.x + by.x, it.y + by.y, it.width, it.height};
}

Rectangle grown(const Rectangle& it, double by) {
  return {it.x - by, it.y - by, it.width + 2 * by, it.height + 2 * by};
}

Rectangle united(const Rectangle& a, const Rectangle& b) {
  const double x = std::min(a.x, b.x);
  const double y = std::min(a.y, b.y);
  return {x, y, std::max(right(a), right(b)) - x, std::max(bottom(a), bottom(b)) - y};
}

Rectangle spanned(Point a, Point b) {
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y)};
}

bool overlap(const Rectangle& a, const Rectangle& b) {
  return a.x < right(b) && b.x < right(a) && a.y < bottom(b) && b.y < bottom(a);
}

double distance(Point a, Point b) {
  return std::abs(a.x - b.x) + std::abs(a.y - b.y);
}

std::vector<Point> corners_of(const std::vector<Point>& line) {
  std::vector<Point> result;
  for (const Point& it : line) {
    if (!result.empty() && result.back().x == it.x && result.back().y == it.y) continue;
    while (result.size() > 1) {
      const Point& last = result.back();
      const Point& before = result[result.size() - 2];
      if ((before.x != last.x || last.x != it.x) && (before.y != last.y || last.y != it.y)) break;
      result.pop_back();
    }
    result.push_back(it);
  }
  return result;
}

Rectangle outline(const Box& box) {
  return {box.corner.x, box.corner.y, box.size.width, box.size.height};
}

const Pin& pin_of(const Problem& problem, PinRef pin) {
  return problem.boxes[pin.box].pins[pin.pin];
}

Point place_of(const Problem& problem, PinRef pin) {
  const Point corner = problem.boxes[pin.box].corner;
  const Point at = pin_of(problem, pin).at;
  return {corner.x + at.x, corner.y + at.y};
}

Rectangle stub_label(Point end, Direction away, Size label) {
  switch (away) {
    case Direction::left:
      return {end.x - stub_gap - label.width, end.y - label.height / 2, label.width, label.height};
    case Direction::right:
      return {end.x + stub_gap, end.y - label.height / 2, label.width, label.height};
    case Direction::up:
      return {end.x - label.width / 2, end.y - stub_gap - label.height, label.width, label.height};
    case Direction::down:
      break;
  }
  return {end.x - label.width / 2, end.y + stub_gap, label.width, label.height};
}

Rectangle extent(const Box& box) {
  Rectangle all{0, 0, box.size.width, box.size.height};
  for (const Rectangle& text : box.texts) all = united(all, text);
  return all;
}

Problem tidy(const Problem& problem) {
  Problem result = problem;
  for (Box& box : result.boxes) tidy(box);
  for (Net& net : result.nets) tidy(net, result.boxes);
  return result;
}

StubRule::StubRule(const Problem& problem)
    : most_pins_(std::all_of(problem.boxes.begin(), problem.boxes.end(), [](const Box& it) { return it.fixed; })
                     ? most_pins_of_lines_where_all_is_fixed
                     : most_pins_of_lines) {}

}  // namespace kinemo::views::layout
