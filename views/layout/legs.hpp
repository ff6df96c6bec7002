#pragma once

// The beginnings of lines at pins, and the stubs of nets that names stand for: what is reserved before lines are
// sought.

#include "views/layout/scene.hpp"

namespace kinemo::views::layout {

/// The beginning of a line at its pin.
struct Leg {
  Point pin;
  Point end;
  Direction away = Direction::right;
};

/// The outer end of a pin's leg: at least `leg_length` away and clear of the box's own texts, but nearer than anything
/// else.
Point leg_end(const Problem& problem, const Scene& scene, PinRef pin);

/// The line between two pins that look at each other from so near that it needs no search: straight, or with a step in
/// the middle of a gap that has no other track. A single point where they touch. Empty, if something is in between.
std::vector<Point> bridge(const Scene& scene, std::size_t net, const Leg& a, const Leg& b);

/// A stub whose line and name meet nothing, if there is such a place; else one that is short enough, down to nothing,
/// not to reach what others have there, with its name where it covers least.
Stub place_stub(const Problem& problem, const Scene& scene, PinRef pin, Size label);

}  // namespace kinemo::views::layout
