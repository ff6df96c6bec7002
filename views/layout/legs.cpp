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

bool is_own(const Problem& problem, const Thing& thing, std::size_t box) {
  const Rectangle own = moved(extent(problem.boxes[box]), problem.boxes[box].corner);
  const Rectangle both = united(own, thing.room);
  return both.x == own.x && both.y == own.y && both.width == own.width && both.height == own.height;
}

double free_length(const Problem& problem, const Scene& scene, PinRef pin, double wanted) {
  const Point from = place_of(problem, pin);
  const Direction away = pin_of(problem, pin).away;
  double result = std::numeric_limits<double>::infinity();
  for (std::size_t it : scene.near(spanned(from, moved(from, away, 3 * wanted)))) {
    if (is_own(problem, scene[it], pin.box)) continue;
    const Passage way = passage(from, away, scene[it].room);
    if (way.meets) result = std::min(result, std::max(way.enters, 0.0));
  }
  return result;
}

}  // namespace

Point leg_end(const Problem& problem, const Scene& scene, PinRef pin) {
  constexpr double share_of_gap = 0.4;  // less than half, as the pin on the other side has a leg as well
  const Pin& it = pin_of(problem, pin);
  const Point from = place_of(problem, pin);
  const double wanted = own_length(problem.boxes[pin.box], from, it.away);
  const double free = free_length(problem, scene, pin, wanted);
  return moved(from, it.away, std::min(wanted, std::max(free * share_of_gap, 1.0)));
}

Stub place_stub(const Problem& problem, const Scene& scene, PinRef pin, Size label) {
  const Pin& it = pin_of(problem, pin);
  const Point from = place_of(problem, pin);
  const auto stub = [&](double length) {
    const Point end = moved(from, it.away, length);
    return Stub{pin, from, end, it.away, stub_label(end, it.away, label)};
  };
  const auto fits = [&](const Stub& candidate) {
    const Rectangle line = grown(spanned(moved(from, it.away, 1), candidate.end), 1);
    for (std::size_t thing : scene.near(united(line, candidate.label))) {
      const bool own = is_own(problem, scene[thing], pin.box);
      if (overlap(scene[thing].room, candidate.label)) return false;
      if (!own && overlap(grown(scene[thing].room, 0.5), line)) return false;
    }
    return true;
  };
  const double beyond = (horizontal(it.away) ? label.width : label.height) + 3 * stub_gap;
  for (const double length : {stub_length, 10.0, 20.0, 25.0, 5.0, 30.0, 40.0, 50.0, stub_length + beyond,
                              stub_length + 2 * beyond, stub_length + 3 * beyond}) {
    if (Stub candidate = stub(length); fits(candidate)) return candidate;
  }
  return stub(stub_length);
}

}  // namespace kinemo::views::layout
