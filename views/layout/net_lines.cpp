#include "views/layout/net_lines.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace kinemo::views::layout {

namespace {

constexpr std::array margins{50.0, 150.0, 500.0};

/// Lines and ends of legs that a search may reach.
struct Tree {
  std::vector<Point> ends;
  std::vector<Rectangle> lines;

  void add(const std::vector<Point>& way) {
    for (std::size_t i = 1; i < way.size(); ++i) lines.push_back(spanned(way[i - 1], way[i]));
  }
};

/// The cheapest way inside of windows that grow until there is one. One that is much dearer than a straight line isn't
/// taken before a larger window was seen.
std::optional<Way> grow_way(const Scene& scene, const Search& search, Point nearest, Effort& effort) {
  constexpr double much = 200;
  std::optional<Way> best;
  for (const double margin : margins) {
    const Rectangle window = grown(spanned(search.from, nearest), margin);
    if (!effort.allows(window, search.step)) break;
    if (std::optional<Way> way = find_way(scene, search, window)) {
      const bool again = best.has_value();
      if (!best || way->cost < best->cost) best = std::move(way);
      if (again || best->cost < distance(search.from, nearest) + much) break;
    }
  }
  return best;
}

std::vector<Point> with_legs(const Leg& leg, const std::vector<Point>& way, const Leg* last) {
  std::vector<Point> points{leg.pin};
  points.insert(points.end(), way.begin(), way.end());
  if (last) points.push_back(last->pin);
  return corners_of(points);
}

bool on_line(Point it, Point a, Point b) {
  const Rectangle line = spanned(a, b);
  return it.x >= line.x && it.x <= right(line) && it.y >= line.y && it.y <= bottom(line);
}

/// From the leg to one of those that came before it in the order.
struct BridgeBack {
  std::vector<Point> line;  ///< empty, if there is none
  std::size_t to = 0;
};

BridgeBack bridge_back(const Scene& scene, std::size_t net, const std::vector<Leg>& legs,
                       const std::vector<std::size_t>& order, std::size_t place) {
  for (std::size_t i = 0; i < place; ++i) {
    std::vector<Point> line = bridge(scene, net, legs[order[place]], legs[order[i]]);
    if (!line.empty()) return {std::move(line), order[i]};
  }
  return {};
}

/// A branch ends where the leg that it reaches ends, as that leg is drawn already.
void end_at_leg(std::vector<Point>& line, const Leg& leg) {
  if (line.size() > 1 && on_line(leg.end, line[line.size() - 2], line.back())) line.back() = leg.end;
}

}  // namespace

Effort::Effort(const Problem& problem) : left_(2e6) {
  constexpr double vertices_for_pin = 4e3;
  for (const Net& net : problem.nets) left_ += vertices_for_pin * static_cast<double>(net.pins.size());
}

bool Effort::allows(const Rectangle& window, double step) {
  const double vertices = (window.width / step) * (window.height / step);
  left_ -= vertices;
  return left_ > 0 || vertices < 1000;
}

JoinOrder join_order(const std::vector<Leg>& legs) {
  JoinOrder order;
  std::size_t next = 0;
  double least = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < legs.size(); ++i) {
    for (std::size_t k = i + 1; k < legs.size(); ++k) {
      const double length = distance(legs[i].end, legs[k].end);
      if (length >= least) continue;
      least = length;
      next = i;
    }
  }
  std::vector<double> far(legs.size(), std::numeric_limits<double>::infinity());
  std::vector<Point> nearest(legs.size());
  std::vector<bool> in(legs.size());
  while (order.legs.size() < legs.size()) {
    in[next] = true;
    order.legs.push_back(next);
    order.nearest.push_back(nearest[next]);
    const Point at = legs[next].end;
    std::size_t closest = next;
    for (std::size_t i = 0; i < legs.size(); ++i) {
      if (in[i]) continue;
      if (const double length = distance(legs[i].end, at); length < far[i]) {
        far[i] = length;
        nearest[i] = at;
      }
      if (in[closest] || far[i] < far[closest]) closest = i;
    }
    if (!in[closest]) {
      order.length += far[closest];
      order.longest_branch = std::max(order.longest_branch, far[closest]);
    }
    next = closest;
  }
  return order;
}

std::optional<std::vector<std::vector<Point>>> find_branches(const Scene& scene, std::size_t net,
                                                             const std::vector<Leg>& legs, const JoinOrder& order,
                                                             Effort& effort, double step) {
  std::vector<std::vector<Point>> branches;
  Tree tree;
  tree.ends.push_back(legs[order.legs[0]].end);
  for (std::size_t i = 1; i < order.legs.size(); ++i) {
    const Leg& leg = legs[order.legs[i]];
    if (auto [line, to] = bridge_back(scene, net, legs, order.legs, i); !line.empty()) {
      if (i > 1) end_at_leg(line, legs[to]);
      tree.add(line);
      branches.push_back(std::move(line));
      continue;
    }
    const std::optional<Way> way =
        grow_way(scene, {leg.end, leg.away, net, tree.ends, tree.lines, step}, order.nearest[i], effort);
    if (!way) return std::nullopt;
    tree.add(way->points);
    tree.ends.push_back(leg.end);
    branches.push_back(with_legs(leg, way->points, i == 1 ? &legs[order.legs[0]] : nullptr));
  }
  return branches;
}

Bridges find_bridges(const Scene& scene, std::size_t net, const std::vector<Leg>& legs) {
  Bridges bridges;
  std::vector<std::size_t> order(legs.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  for (std::size_t i = 0; i < legs.size(); ++i) {
    std::vector<Point> line = bridge_back(scene, net, legs, order, i).line;
    bridges.joined.push_back(!line.empty());
    if (!line.empty()) bridges.lines.push_back(std::move(line));
  }
  return bridges;
}

std::vector<Point> dots_of(const std::vector<std::vector<Point>>& branches) {
  std::vector<Point> dots;
  for (const auto& branch : branches) {
    const Point at = branch.back();
    std::array<bool, 4> arms{};
    for (const auto& other : branches) {
      for (std::size_t i = 1; i < other.size(); ++i) {
        const Point a = other[i - 1];
        const Point b = other[i];
        if (!on_line(at, a, b)) continue;
        arms[0] |= std::min(a.x, b.x) < at.x;
        arms[1] |= std::max(a.x, b.x) > at.x;
        arms[2] |= std::min(a.y, b.y) < at.y;
        arms[3] |= std::max(a.y, b.y) > at.y;
      }
    }
    const bool known = std::any_of(dots.begin(), dots.end(), [&](Point it) { return it.x == at.x && it.y == at.y; });
    const bool touch = branch.size() == 1;
    if (!known && (touch || std::count(arms.begin(), arms.end(), true) > 2)) dots.push_back(at);
  }
  return dots;
}

}  // namespace kinemo::views::layout
