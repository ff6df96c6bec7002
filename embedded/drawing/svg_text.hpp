#pragma once

// Small edits in the text of an SVG file.

#include <string>

namespace embedded::drawing {

/// All widths of strokes multiplied by `factor`, the width where none is written included.
std::string with_stroke_widths(const std::string& svg, double factor);

/// The width of a stroke that the file names first; 1 where it names none.
double first_stroke_width(const std::string& svg);

/// All texts stretched about the points where they are anchored.
std::string with_texts_stretched(const std::string& svg, double x_factor, double y_factor);

/// What has no colour drawn in `color` (such as "#12ab00") in place of black; "currentColor" means it as well.
std::string with_foreground(const std::string& svg, const std::string& color);

/// A style sheet by which what is black takes the colour.
std::string foreground_style_sheet(const std::string& color);

}  // namespace embedded::drawing
