#pragma once

#include "platform/class_system/class_system.hpp"

#include <string>

namespace embedded::class_system {

/// Holds inputs against a signature. `name` is how the method is told in errors, which count inputs from 1 and leave
/// out the first `objects` ones: those that a method stands behind, as in g.nodes.
/// @throws "TooFewInputs" (name, given, least), "TooManyInputs" (name, given, most), "InputType" (name, position, types
/// that are valid, class that was given)
void check_inputs(const std::string& name, const ccos::COSMethodSignature& signature, int nIn,
                  const ccos::COSValue* inputs, std::size_t objects);

}  // namespace embedded::class_system
