#pragma once

// The lines of one net, as they grow from pin to pin.

#include "views/layout/legs.hpp"
#include "views/layout/maze.hpp"

namespace kinemo::views::layout {

/// Searches may look at so many vertices in all; then only small windows are searched.
class Effort {
 public:
  explicit Effort(const Problem& problem);
  bool allows(const Rectangle& window, double step);

 private:
  double left_;
};

/// In which order pins join the net: near ones first. `length` is about how much line that takes.
struct JoinOrder {
  std::vector<std::size_t> legs;
  std::vector<Point> nearest;  ///< by place in `legs`: the end of the leg that was nearest among those before it
  double length = 0;
  double longest_branch = 0;
};
JoinOrder join_order(const std::vector<Leg>& legs);

/// Branches, on tracks that are `step` apart, from pins to what was there before; the first one joins two pins.
/// Nothing, if a pin can't be reached.
std::optional<std::vector<std::vector<Point>>> find_branches(const Scene& scene, std::size_t net,
                                                             const std::vector<Leg>& legs, const JoinOrder& order,
                                                             Effort& effort, double step);

/// Lines between pins of the net that need no search, and by leg whether one leads to an earlier leg.
struct Bridges {
  std::vector<std::vector<Point>> lines;
  std::vector<bool> joined;
};
Bridges find_bridges(const Scene& scene, std::size_t net, const std::vector<Leg>& legs);

/// The ends of branches where three lines or more meet, and where pins touch.
std::vector<Point> dots_of(const std::vector<std::vector<Point>>& branches);

}  // namespace kinemo::views::layout
