#include "views/layout/legs.hpp"

#include <algorithm>
#include <array>
#include <limits>

namespace kinemo::views::layout {

namespace {

/// Where a ray along an axis is inside of a rectangle, as distances from its beginning.
struct Passage {
  double enters = 0;
  double leaves = 0;
  bool meets = false;
};

Passage passage(Point from, Direction away, const Rectangle& it) {
  const bool sideways = horizontal(away);
  const double beside = sideways ? from.y : from.x;
  const double low = sideways ? it.y : it.x;
  const double high = sideways ? bottom(it) : right(it);
  if (beside < low || beside > high) return {};
  const double start = sideways ? from.x : from.y;
  const double near = (sideways ? it.x : it.y) - start;
  const double far = (sideways ? right(it) : bottom(it)) - start;
  if (away == Direction::right || away == Direction::down) return {near, far, far > 0};
  return {-far, -near, near < 0};
}

/// Until the leg is outside of its own box and texts.
double own_length(const Box& box, Point from, Direction away) {
  constexpr double clearance = 4;
  double length = leg_length;
  const auto leave = [&](const Rectangle& it) {
    const Passage way = passage(from, away, it);
    if (way.meets && way.enters - clearance < length && length < way.leaves + clearance)
      length = way.leaves + clearance;
  };
  for (int round = 0; round < 2; ++round) {
    leave(outline(box));
    for (const Rectangle& text : box.texts) leave(moved(text, box.corner));
  }
  return length;
}

/// The box and its texts.
bool is_own(const Problem& problem, const Thing& thing, std::size_t box) {
  if (thing.kind != Kind::box && thing.kind != Kind::text) return false;
  const Rectangle own = moved(extent(problem.boxes[box]), problem.boxes[box].corner);
  const Rectangle both = united(own, thing.room);
  return both.x == own.x && both.y == own.y && both.width == own.width && both.height == own.height;
}

/// Until something else is nearer to the ray than `air`.
double free_length(const Problem& problem, const Scene& scene, PinRef pin, double wanted, double air) {
  const Point from = place_of(problem, pin);
  const Direction away = pin_of(problem, pin).away;
  double result = std::numeric_limits<double>::infinity();
  for (std::size_t it : scene.near(grown(spanned(from, moved(from, away, 3 * wanted)), air))) {
    if (is_own(problem, scene[it], pin.box)) continue;
    const Passage way = passage(from, away, grown(scene[it].room, air));
    if (way.meets) result = std::min(result, std::max(way.enters, 0.0));
  }
  return result;
}

/// Less than half of a gap, as the pin on the other side has a line as well.
constexpr double share_of_gap = 0.4;

Stub stub_of(const Problem& problem, PinRef pin, double length, Size label) {
  const Direction away = pin_of(problem, pin).away;
  const Point from = place_of(problem, pin);
  const Point end = moved(from, away, length);
  return {pin, from, end, away, stub_label(end, away, label)};
}

bool fits(const Problem& problem, const Scene& scene, const Stub& stub) {
  const Rectangle line = grown(spanned(moved(stub.from, stub.away, 1), stub.end), 1);
  for (std::size_t thing : scene.near(united(line, stub.label))) {
    const bool own = is_own(problem, scene[thing], stub.pin.box);
    if (overlap(scene[thing].room, stub.label)) return false;
    if (!own && overlap(grown(scene[thing].room, 0.5), line)) return false;
  }
  return true;
}

/// Beyond the stub's end, beside its line, and beside its box at the pin's edge.
std::array<Rectangle, 5> label_places(const Problem& problem, const Stub& stub) {
  const Box& box = problem.boxes[stub.pin.box];
  const Rectangle own = moved(extent(box), box.corner);
  const Rectangle edges = outline(box);
  const double width = stub.label.width;
  const double height = stub.label.height;
  const auto at = [&](double x, double y) { return Rectangle{x, y, width, height}; };
  if (horizontal(stub.away)) {
    const bool rightward = stub.away == Direction::right;
    const double outside = rightward ? stub.from.x + stub_gap : stub.from.x - stub_gap - width;
    const double inside = rightward ? right(edges) - stub_gap - width : edges.x + stub_gap;
    return {stub.label, at(outside, stub.from.y - stub_gap - height), at(outside, stub.from.y + stub_gap),
            at(inside, own.y - stub_gap - height), at(inside, bottom(own) + stub_gap)};
  }
  const bool downward = stub.away == Direction::down;
  const double outside = downward ? stub.from.y + stub_gap : stub.from.y - stub_gap - height;
  const double inside = downward ? bottom(edges) - stub_gap - height : edges.y + stub_gap;
  return {stub.label, at(stub.from.x + stub_gap, outside), at(stub.from.x - stub_gap - width, outside),
          at(right(own) + stub_gap, inside), at(own.x - stub_gap - width, inside)};
}

double covered_area(const Scene& scene, const Rectangle& label) {
  double area = 0;
  for (std::size_t it : scene.near(label)) {
    const Rectangle room =
        scene[it].kind == Kind::box || scene[it].kind == Kind::text ? scene[it].room : grown(scene[it].room, 1);
    area += std::max(std::min(right(label), right(room)) - std::max(label.x, room.x), 0.0) *
            std::max(std::min(bottom(label), bottom(room)) - std::max(label.y, room.y), 0.0);
  }
  return area;
}

double distance(Point from, const Rectangle& to) {
  return std::max({to.x - from.x, from.x - right(to), 0.0}) + std::max({to.y - from.y, from.y - bottom(to), 0.0});
}

/// As long as the gap allows, down to nothing. The name stands where it covers least, but not far away.
Stub squeezed_stub(const Problem& problem, const Scene& scene, PinRef pin, Size label) {
  constexpr double least = 2;
  const double gap = free_length(problem, scene, pin, stub_length, 1);
  const double length = std::min(stub_length, share_of_gap * gap);
  Stub stub = stub_of(problem, pin, length < least ? 0 : length, label);
  double best = std::numeric_limits<double>::infinity();
  for (const Rectangle& place : label_places(problem, stub)) {
    const double price = covered_area(scene, place) + distance(stub.from, place);
    if (price < best) stub.label = place;
    best = std::min(best, price);
  }
  return stub;
}

/// Whether nothing of others is on the line or right beside it.
bool is_free(const Scene& scene, const std::vector<Point>& line, std::size_t net) {
  constexpr double air = 1.5;
  for (std::size_t i = 1; i < line.size(); ++i) {
    Rectangle room = spanned(line[i - 1], line[i]);
    const bool lies = room.height == 0;
    (lies ? room.y : room.x) -= air;
    (lies ? room.height : room.width) += 2 * air;
    for (std::size_t it : scene.near(room)) {
      if (scene[it].net != net && overlap(scene[it].room, room)) return false;
    }
  }
  return true;
}

Direction opposite(Direction it) {
  switch (it) {
    case Direction::left:
      return Direction::right;
    case Direction::right:
      return Direction::left;
    case Direction::up:
      return Direction::down;
    case Direction::down:
      break;
  }
  return Direction::up;
}

}  // namespace

Point leg_end(const Problem& problem, const Scene& scene, PinRef pin) {
  const Pin& it = pin_of(problem, pin);
  const Point from = place_of(problem, pin);
  const double wanted = own_length(problem.boxes[pin.box], from, it.away);
  const double free = free_length(problem, scene, pin, wanted, 0);
  return moved(from, it.away, std::min(wanted, std::max(free * share_of_gap, 1.0)));
}

std::vector<Point> bridge(const Scene& scene, std::size_t net, const Leg& a, const Leg& b) {
  constexpr double longest = 2 * leg_length;
  constexpr double narrow = leg_length;
  constexpr double most_aside = 100;
  if (b.away != opposite(a.away)) return {};
  const bool sideways = horizontal(a.away);
  const double ahead = sideways ? b.pin.x - a.pin.x : b.pin.y - a.pin.y;
  const double gap = a.away == Direction::right || a.away == Direction::down ? ahead : -ahead;
  const double aside = std::abs(sideways ? b.pin.y - a.pin.y : b.pin.x - a.pin.x);
  if (gap < 0 || gap > longest || (aside > 0 && (gap > narrow || aside > most_aside))) return {};
  const Point middle = moved(a.pin, a.away, gap / 2);
  const Point turn = sideways ? Point{middle.x, b.pin.y} : Point{b.pin.x, middle.y};
  std::vector<Point> line = corners_of({a.pin, middle, turn, b.pin});
  return is_free(scene, line, net) ? line : std::vector<Point>();
}

Stub place_stub(const Problem& problem, const Scene& scene, PinRef pin, Size label) {
  const bool sideways = horizontal(pin_of(problem, pin).away);
  const double beyond = (sideways ? label.width : label.height) + 3 * stub_gap;
  for (const double length : {stub_length, 10.0, 20.0, 25.0, 5.0, 30.0, 40.0, 50.0, stub_length + beyond,
                              stub_length + 2 * beyond, stub_length + 3 * beyond}) {
    if (Stub candidate = stub_of(problem, pin, length, label); fits(problem, scene, candidate)) return candidate;
  }
  return squeezed_stub(problem, scene, pin, label);
}

}  // namespace kinemo::views::layout
