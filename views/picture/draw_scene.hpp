// The painting of a scene.
#pragma once

#include "embedded/drawing/canvas.hpp"
#include "views/picture/marks.hpp"
#include "views/picture/scene.hpp"

namespace kinemo::views::picture {

/// The ring that marks a port: around the line that leaves it, clear of its name inside of the block.
constexpr double port_mark_radius = 5;
/// The centre of the ring; `corner` is that of the pin's box.
layout::Point port_mark(const layout::Pin& pin, layout::Point corner);

/// Draws so that the upper left corner of the scene stands at `corner`.
void draw_scene(embedded::drawing::Canvas& canvas, const Scene& scene, const Marks& marks,
                embedded::drawing::Point corner);

}  // namespace kinemo::views::picture
