#pragma once

// Objects of the class "Gantrel.Parameter": a value, perhaps with a unit, perhaps marked as a run-time parameter.

#include "platform/scripting_array/scripting_array.hpp"

#include <string>

namespace embedded::block_diagram {

extern const char* const parameter_class;

/// An object with the properties "Value", "Unit" and "Runtime". With a unit, "Value" is a "kinemo.Value", so that the
/// unit goes along wherever the object is computed with. A value that brings a unit of its own is converted to `unit`,
/// or keeps its own when `unit` is empty. Numbers of a run-time parameter become doubles, as in the compiled graph.
/// @throws "kinemo:units:core" "InvalidUnit" (unit), "kinemo:host:parameters" "UnitOfVariable" (own unit, unit) where
/// one can't be converted, "UnitOfNoNumbers" (unit, class)
cvUniquePtr parameterObject(cvUniquePtr value, const std::string& unit, bool runtime);
bool isParameterObject(const cvArray_tag* array);
/// What expressions compute with: the "Value" of a parameter object, any other array as it is. Shares the contents.
cvUniquePtr parameterValue(const cvArray_tag* array);
/// Whether a graph can hold the array: real numbers, one at least, with a unit or without.
bool holdsRealNumbers(const cvArray_tag* array);
/// Empty for none.
std::string unitOf(const cvArray_tag* parameter);
bool isRuntime(const cvArray_tag* array);

}  // namespace embedded::block_diagram
