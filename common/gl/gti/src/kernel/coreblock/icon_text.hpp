#pragma once

// The text of a text icon.

#include "platform/block_diagram/window.hpp"
#include "platform/foundation/ustring.hpp"

#include <vector>

namespace gl::gti {

/// The text cut at its line feeds, which are dropped. Empty lines stay; an empty text has no line.
std::vector<ustring> text_lines(const ustring& text);

/// Draws the lines around the centre of the bounds, with the window's alignment. An odd number of lines has its middle
/// one half a line below the centre.
void draw_icon_text(GTWindow* window, const GTBounds& bounds, const ustring& text);

}  // namespace gl::gti
