#pragma once

// The beginnings of lines at pins, and the stubs of nets that names stand for: what is reserved before lines are
// sought.

#include "views/layout/scene.hpp"

namespace kinemo::views::layout {

/// The outer end of a pin's leg: at least `leg_length` away and clear of the box's own texts, but nearer than anything
/// else.
Point leg_end(const Problem& problem, const Scene& scene, PinRef pin);

/// A stub whose line and name meet nothing, if there is such a place; else the ordinary one.
Stub place_stub(const Problem& problem, const Scene& scene, PinRef pin, Size label);

}  // namespace kinemo::views::layout
