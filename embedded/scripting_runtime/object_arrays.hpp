#pragma once

// Arrays of several objects, whose class is one of a class system.

#include "embedded/scripting_runtime/errors.hpp"
#include "platform/scripting_array/scripting_array.hpp"

namespace embedded::scripting_runtime {

/// Whether an array, of any size, holds objects of a class whose arrays may hold several.
bool holds_objects(const cvArray_tag* array);
/// Whether both hold objects, of one class.
bool hold_same_objects(const cvArray_tag* a, const cvArray_tag* b);
/// An array of new objects of the class of `like`, which `holds_objects`.
cvUniquePtr new_objects(const cvArray_tag* like, const Shape& shape);
/// Puts object `index` of `source` to a place of an array of the same class.
void put_object(cvArray_tag* target, std::size_t place, const cvArray_tag* source, std::size_t index);

}  // namespace embedded::scripting_runtime
