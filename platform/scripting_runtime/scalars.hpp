#pragma once

// Single values out of inputs of functions.

#include "platform/foundation/export.hpp"
#include "platform/scripting_array/scripting_array.hpp"

namespace kmf {

/// @throws "kinemo:scripting:runtime" "NotDoubleScalar" (class, count of elements) for anything but one real double
KINEMO_PLATFORM_API double cvarray_to_double_scalar(const cvArray_tag* array);
/// @throws "kinemo:scripting:runtime" "NotLogicalScalar" (class, count of elements) for anything but one logical
KINEMO_PLATFORM_API bool cvarray_to_logical_scalar(const cvArray_tag* array);

}  // namespace kmf
