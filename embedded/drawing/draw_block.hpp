#pragma once

#include "embedded/drawing/canvas.hpp"

namespace embedded::drawing {

/// Draws a block with its icon, frame and port labels into bounds; neither its name nor its lines. A block whose style
/// name is a registered icon is drawn by the icon service, any other draws itself. Nothing for empty bounds.
void draw_block(Canvas& canvas, const GTBlock& block, const GTBounds& bounds);

}  // namespace embedded::drawing
