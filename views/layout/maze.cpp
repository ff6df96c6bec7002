#include "views/layout/maze.hpp"

#include <algorithm>
#include <queue>

#include "views/layout/track_grid.hpp"

namespace kinemo::views::layout {

namespace {

constexpr float bend_price = 30;

enum Axis : std::size_t { along_x, along_y };

/// A* over vertices and the axis along which each was reached.
class Maze {
 public:
  Maze(const TrackGrid& grid, const Search& search)
      : grid_(grid), best_(2 * grid.size(), TrackGrid::closed), from_(2 * grid.size(), nowhere) {
    const std::size_t vertex = grid.vertex(search.from);
    if (vertex < grid.size()) reach(2 * vertex + (horizontal(search.away) ? along_x : along_y), 0, nowhere);
  }

  std::optional<Way> run() {
    while (!open_.empty()) {
      const Entry entry = open_.top();
      open_.pop();
      if (entry.cost > best_[entry.state]) continue;
      if (grid_.is_end(entry.state / 2)) return way_to(entry.state);
      for (const Axis axis : {along_x, along_y}) spread(entry, axis);
    }
    return std::nullopt;
  }

 private:
  static constexpr std::uint32_t nowhere = static_cast<std::uint32_t>(-1);

  struct Entry {
    float bound = 0;  ///< cost to here, and the least that is still to come
    float cost = 0;
    std::size_t state = 0;

    bool operator<(const Entry& other) const {
      if (bound != other.bound) return bound > other.bound;
      if (cost != other.cost) return cost < other.cost;
      return state > other.state;
    }
  };

  void spread(const Entry& entry, Axis axis) {
    const std::size_t vertex = entry.state / 2;
    float cost = entry.cost;
    if (entry.state % 2 != axis) {
      if (!grid_.may_bend(vertex)) return;
      cost += bend_price;
    }
    const std::size_t step = axis == along_x ? 1 : grid_.columns();
    const auto price = [&](std::size_t first) { return axis == along_x ? grid_.across(first) : grid_.down(first); };
    const auto go = [&](std::size_t next, float by) {
      if (by < TrackGrid::closed) reach(2 * next + axis, cost + by, static_cast<std::uint32_t>(entry.state));
    };
    go(vertex + step, price(vertex));
    if (axis == along_x ? vertex % grid_.columns() > 0 : vertex >= step) go(vertex - step, price(vertex - step));
  }

  void reach(std::size_t state, float cost, std::uint32_t from) {
    if (state >= best_.size() || cost >= best_[state]) return;
    best_[state] = cost;
    from_[state] = from;
    open_.push({cost + to_come(state), cost, state});
  }

  /// The way along the axes, and the bend that it needs at least.
  float to_come(std::size_t state) const {
    const Point at = grid_.point(state / 2);
    const Rectangle& ends = grid_.ends();
    const double x = std::max({ends.x - at.x, at.x - right(ends), 0.0});
    const double y = std::max({ends.y - at.y, at.y - bottom(ends), 0.0});
    const bool bends = state % 2 == along_x ? y > 0 : x > 0;
    return static_cast<float>(x + y) + (bends ? bend_price : 0);
  }

  Way way_to(std::size_t state) const {
    Way way;
    way.cost = best_[state];
    for (std::uint32_t it = static_cast<std::uint32_t>(state); it != nowhere; it = from_[it]) {
      way.points.push_back(grid_.point(it / 2));
    }
    std::reverse(way.points.begin(), way.points.end());
    return way;
  }

  const TrackGrid& grid_;
  std::vector<float> best_;
  std::vector<std::uint32_t> from_;
  std::priority_queue<Entry> open_;
};

}  // namespace

std::optional<Way> find_way(const Scene& scene, const Search& search, const Rectangle& window) {
  const TrackGrid grid(scene, search, window);
  if (grid.too_large()) return std::nullopt;
  std::optional<Way> way = Maze(grid, search).run();
  if (way) way->points = corners_of(way->points);
  return way;
}

}  // namespace kinemo::views::layout
