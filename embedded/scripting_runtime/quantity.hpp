#pragma once

// Values with units, taken apart and put together. In the language they are objects of the class "kinemo.Value" with
// the properties "value" and "unit". An object of the class "Gantrel.Parameter" counts as its property "Value", which
// may be such an object.

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/value.hpp"
#include "platform/units/units.hpp"

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

using Unit = units2::core::AbstractExpr;

/// Numbers, or whatever else a parameter object holds, with the unit in which they are told. The empty unit means that
/// none was given, which isn't the same as "1".
struct Quantity {
  Value numbers;
  Unit unit;

  bool has_unit() const { return unit.id() != 0; }
};

/// A value that isn't one of these classes is a quantity without a unit.
/// @throws "NoValueInObject" (class), "kinemo:units:core" "InvalidUnit" (text)
Quantity quantity_of(const cvArray_tag* array);
Quantity quantity_of(const Value& value);
/// A value of the language: an object when there is a unit.
Value value_of(Quantity quantity);
/// The object itself. @throws "NotNumeric" (class) for what holds no numbers
cvUniquePtr value_object(cvUniquePtr numbers, const std::string& unit);

/// "kOhm"
const std::string& unit_text(const Unit& unit);
/// The unit "1".
Unit one();

/// Numbers told in another unit; integers become doubles. The units must be commensurable.
Value converted(Value numbers, const Unit& from, const Unit& to);
/// The same, of a quantity; one without a unit takes it.
/// @throws "UnitsDiffer" (operation, unit, unit)
Value told_in(Quantity quantity, const Unit& unit, const std::string& operation);
/// Replaces values by their numbers in the unit of the first one that has any, which is returned.
/// @throws "UnitsDiffer" (operation, unit, unit)
Unit to_common_unit(std::vector<Value>& values, const std::string& operation);

/// Plain numbers of a value that has no unit or a dimensionless one.
/// @throws "UnitNotTaken" (function, unit)
Value dimensionless_numbers(Quantity quantity, const std::string& function);
/// The numbers, whose zeros are told from the others: those mean the same in every unit without offset.
/// @throws "OffsetUnit" (operation, unit)
Value condition_numbers(Quantity quantity, const std::string& operation);
/// @throws "OffsetUnit" (operation, unit) for units such as degC
void refuse_offset(const Unit& unit, const std::string& operation);

/// Dimensions of an array, of the numbers inside an object with a value.
Shape shape_of(const cvArray_tag* array);

}  // namespace embedded::scripting_runtime
