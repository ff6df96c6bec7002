#pragma once

// What the classes of arrays are called, and what a number becomes in each of them.

#include "embedded/scripting_array/array.hpp"

namespace kmf::embedded {

const char* class_name(cvClassID class_id) noexcept;

/// Double, single, the integers: what "numeric" means in the language.
bool is_number_class(cvClassID class_id) noexcept;
bool is_integer_class(cvClassID class_id) noexcept;
/// The classes that are stored as numbers: the numeric ones and logical.
inline bool is_stored_as_numbers(cvClassID class_id) noexcept {
  return class_id == cvLOGICAL_CLASS || is_number_class(class_id);
}

/// `value` as the class holds it: integers rounded (halves away from zero) and saturated, NaN as 0; single precision;
/// logicals 0 or 1. @throws "kinemo:scripting:array" "NanAsLogical"
double converted(double value, cvClassID class_id);

}  // namespace kmf::embedded
