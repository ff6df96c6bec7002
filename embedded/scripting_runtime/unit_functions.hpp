#pragma once

// What built-in functions do with values that have units. Each function has one rule, which takes the objects apart,
// runs the function on plain numbers, and gives the result its unit. A function without a rule takes numbers alone:
// a unit that measures something is refused, never dropped.

#include "embedded/scripting_runtime/builtin.hpp"

namespace embedded::scripting_runtime {

/// Runs a function of which an input is an object that counts as a value. @throws "UnitsDiffer", "UnitNotTaken",
/// "OffsetUnit", "UnitPower", and what the function throws
void run_with_units(const Builtin& builtin, Call& call);

}  // namespace embedded::scripting_runtime
