#pragma once

// Assignment to parts of variables: a(i) = x, a{i} = x, a.f = x, and chains of these.
//
// An array keeps its class: what is put into it is converted, as integers are rounded and saturated. A variable that
// isn't there yet, and the empty 0 by 0 array, take class and kind from what is put in. Arrays grow where a place lies
// beyond their end; new places hold zeros, empty cells, structures with empty fields, or new objects. What isn't shared is written
// in place. After an error the variable is as it was.
//
// Errors of the group "kinemo:scripting:runtime": "AssignmentMismatch" (shape of the places, shape of the value),
// "CannotAssign" (class of the value, class of the array), "CannotGrow" (index, shape), "OnePlaceNeeded" (number),
// "IndexOfIndex", "NotOneStructure" (number), "CannotDelete" (shape), and those of indexing.

#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/value.hpp"

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

/// One link of a chain such as a(1).f{2}.
struct Step {
  enum class Kind { index, cell, field };

  Kind kind = Kind::index;
  std::vector<Subscript> subscripts;
  std::string field;
};

/// `target` may be null for a variable that isn't there.
void assign(cvUniquePtr& target, const std::vector<Step>& steps, Value value);
/// The last step is an index; what it names goes away and the array closes up.
void remove_elements(cvUniquePtr& target, const std::vector<Step>& steps);

/// What a step leads to, for `end` in the steps behind it; null when it isn't there or isn't one array.
cvUniquePtr part_at(const cvArray_tag* array, const Step& step);

// --- the last step, on arrays of any class

/// Puts the value, or each of its elements, to the places.
void assign_elements(cvUniquePtr& target, const std::vector<Subscript>& places, const Value& value);
/// Takes the places out of a vector, or whole rows, columns or pages of any other array.
void delete_elements(cvUniquePtr& target, const std::vector<Subscript>& places);
/// Whether a variable isn't there, or is the empty 0 by 0 array that takes class and kind from what is put in.
bool is_nothing(const cvArray_tag* array);
/// The one place that the subscripts name, from 0, and the shape that the array needs for it.
struct OnePlace {
  std::vector<std::size_t> shape;
  std::size_t index;
};
OnePlace one_place(const cvArray_tag* array, const std::vector<Subscript>& subscripts);
/// The array in a larger shape, its elements at their subscripts.
cvUniquePtr grown(const cvArray_tag* array, const std::vector<std::size_t>& shape);

}  // namespace embedded::scripting_runtime
