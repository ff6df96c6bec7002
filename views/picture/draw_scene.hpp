// The painting of a scene.
#pragma once

#include "embedded/drawing/canvas.hpp"
#include "views/picture/marks.hpp"
#include "views/picture/scene.hpp"

namespace kinemo::views::picture {

/// Draws so that the upper left corner of the scene stands at `corner`.
void draw_scene(embedded::drawing::Canvas& canvas, const Scene& scene, const Marks& marks,
                embedded::drawing::Point corner);

}  // namespace kinemo::views::picture
