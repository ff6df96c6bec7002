#pragma once

#include "embedded/drawing/handles.hpp"
#include "platform/scripting_array/scripting_array.hpp"

namespace embedded::drawing {

/// A surface with the pixels of a true colour image (rows x columns x 3): integers of 0 to 255, or fractions. Images of
/// more than some thousand pixels a side are thinned out. Null for any other array.
SurfacePointer bitmap_of(const cvArray_tag* image);

}  // namespace embedded::drawing
