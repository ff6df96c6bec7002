#pragma once

#include "embedded/drawing/canvas.hpp"
#include "embedded/drawing/handles.hpp"

#include <string>

namespace embedded::drawing {

/// A surface of a size in pixels or points. What it writes before its end is added to `bytes`, which stays where it is.
/// @throws "kinemo:host:drawing" "InvalidSize"
SurfacePointer make_surface(Format format, Size size, std::string& bytes);

/// Writes all that is missing from `bytes` of the context's surface.
/// @throws "kinemo:host:drawing" "CannotWrite" (reason), also where something couldn't be drawn: from then on a context
/// draws nothing
void finish_surface(Format format, cairo_t* context, std::string& bytes);

/// @throws "kinemo:host:drawing" "InvalidSize" for a size that the format doesn't hold
void check_size(Format format, Size size);

}  // namespace embedded::drawing
