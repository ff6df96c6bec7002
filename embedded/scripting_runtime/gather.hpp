#pragma once

// Arrays made of the elements of another one, of any class.

#include "embedded/scripting_runtime/errors.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <vector>

namespace embedded::scripting_runtime {

/// A new array of `shape` whose element i is the one at `sources[i]` of `array`.
cvUniquePtr gather(const cvArray_tag* array, const Shape& shape, const std::vector<std::size_t>& sources);
/// Rows and columns exchanged. @throws "NotMatrix" (shape) for more than two dimensions
cvUniquePtr transposed(const cvArray_tag* array);
/// The same elements in another shape, whose product must be the same.
cvUniquePtr reshaped(const cvArray_tag* array, const Shape& shape);

}  // namespace embedded::scripting_runtime
