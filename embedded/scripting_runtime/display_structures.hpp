#pragma once

// Structures and arrays of them as lines of text.

#include "platform/scripting_array/scripting_array.hpp"

#include <string>

namespace embedded::scripting_runtime {

/// One structure: fields below each other. Several: a table with a row for each, where all values fit in one; else the
/// fields of each, where they aren't too many; else the names of the fields alone.
std::string structure_text(const cvArray_tag* array);

}  // namespace embedded::scripting_runtime
