#pragma once

// The lines of one net, as they grow from pin to pin.

#include "views/layout/maze.hpp"

namespace kinemo::views::layout {

struct Leg {
  Point pin;
  Point end;
  Direction away = Direction::right;
};

/// Searches may look at so many vertices in all; then only small windows are searched.
class Effort {
 public:
  explicit Effort(const Problem& problem);
  bool allows(const Rectangle& window);

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

/// Branches from pins to what was there before; the first one joins two pins. Nothing, if a pin can't be reached.
std::optional<std::vector<std::vector<Point>>> find_branches(const Scene& scene, std::size_t net,
                                                             const std::vector<Leg>& legs, const JoinOrder& order,
                                                             Effort& effort);

/// The ends of branches where three lines or more meet.
std::vector<Point> dots_of(const std::vector<std::vector<Point>>& branches);

}  // namespace kinemo::views::layout
