#pragma once

// What scripts give as values of parameters: texts as they stand, and numbers and switches, which are written as texts.

#include "embedded/block_diagram/edit.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace embedded::block_diagram {

/// One value of a call, which is borrowed.
struct ParameterValue {
  std::string name;
  const cvArray_tag* array;
  std::string function;  ///< the call's, for errors
  std::size_t input;     ///< number of the value among the call's inputs, from 1
};
using ParameterValues = std::vector<ParameterValue>;

/// How a parameter takes numbers and switches.
enum class ParameterSort {
  expression,  ///< true is 1
  switched,    ///< "on" or "off", also of 1 and 0
  free         ///< whatever its reader makes of it; true is "on"
};
ParameterSort sortOf(const GTBlock& block, const std::string& name);

/// The name of a parameter. @throws "kinemo:host:parameters" "NotAName" (function, input, what was given)
std::string parameterName(const cvArray_tag* array, const std::string& function, std::size_t input);

/// The text of a value without a unit. Numbers are written exactly, with no more digits than that takes: "0.1",
/// "[1 2; 3 4]".
/// @throws "kinemo:host:parameters" "NotAValue" (function, input, parameter, what was given), "ValueWithUnit"
/// (function, input, parameter, block path or "")
ustring parameterText(const ParameterValue& value, ParameterSort sort);

/// The texts of values for a block. A value with a unit sets the parameter of the unit, too, where there is one:
/// "R_unit" of "R". @throws as above
ParameterTexts textsFor(const GTBlock& block, const ParameterValues& values);
/// The texts of values for settings of a diagram. @throws as above
ParameterTexts textsForSettings(const ParameterValues& values);

}  // namespace embedded::block_diagram
