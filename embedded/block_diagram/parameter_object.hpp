#pragma once

// Objects of the class "Gantrel.Parameter": a value with a unit, perhaps marked as a run-time parameter.

#include "platform/scripting_array/scripting_array.hpp"

#include <string>

namespace embedded::scripting_runtime {
class Workspace;
}

namespace embedded::block_diagram {

extern const char* const parameter_class;

/// An object with the properties "Value", "Unit" and "Runtime".
cvUniquePtr parameterObject(cvUniquePtr value, const std::string& unit, bool runtime);
bool isParameterObject(const cvArray_tag* array);
/// What expressions compute with: the value of a parameter object, any other array as it is. Shares the contents.
cvUniquePtr plainValue(const cvArray_tag* array);
/// Empty for none.
std::string unitOf(const cvArray_tag* parameter);
bool isRuntime(const cvArray_tag* array);

/// A workspace with the plain values of all variables.
scripting_runtime::Workspace plainWorkspace(const scripting_runtime::Workspace& workspace);

}  // namespace embedded::block_diagram
