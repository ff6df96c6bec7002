#pragma once

// The operators on values with units. The plain operators hand over to these when an operand is an object that counts
// as a value (`is_value_object`).
//
//   + - comparisons [,] :   in the unit of the first operand that has one; a bare number takes it
//   * / \ ^                 make units; a bare number is a plain factor; what is dimensionless is told in "1"
//   & | ~                   look at zeros only
// Units with an offset (degC) are points on a scale. Their differences are told in the unit without offset (K), and a
// value in that unit moves a point. They are never factors, and two points have no sum.
//
// Errors: "UnitsDiffer" (operation, unit, unit), "UnitNotTaken" (operation, unit), "OffsetUnit" (operation, unit),
// "UnitPower" (unit, exponent), and those of the plain operators.

#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

namespace embedded::scripting_runtime {

Value binary_with_units(Operator op, const Value& a, const Value& b);
/// plus, minus and not_.
Value unary_with_units(Operator op, const Value& a);
Value range_with_units(const Value& first, const Value& step, const Value& last);

/// The quantity as operators give it: what is dimensionless is told in "1".
Quantity simplified(Quantity quantity);
/// The unit to the power of a real number, with the numbers told so that it exists: in base units where only these have
/// the root. @throws "UnitPower" (unit, exponent)
Unit power_of_unit(Quantity& base, double exponent);

}  // namespace embedded::scripting_runtime
