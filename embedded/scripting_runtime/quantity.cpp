#include "embedded/scripting_runtime/quantity.hpp"

#include "embedded/scripting_runtime/numbers.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <cmath>

namespace embedded::scripting_runtime {

namespace core = units2::core;

namespace {

constexpr const char* value_class = "kinemo.Value";

cvUniquePtr property(const cvArray_tag* object, const char* name) {
  cvUniquePtr result(cvGetProperty(object, 0, name));
  if (!result) throw_runtime_error("NoValueInObject", cvGetClassName(object));
  return result;
}

Unit unit_of(const cvArray_tag* object) {
  const cvUniquePtr text(cvGetProperty(object, 0, "unit"));
  return text && cvIsChar(text.get()) ? core::parse(kmf::cvarray_to_string(text.get())) : Unit();
}

Quantity unwrapped(const cvArray_tag* array, int levels) {
  if (levels == 0 || !is_value_object(array)) return {Value::of(array), {}};
  if (!cvIsA(array, value_class)) return unwrapped(property(array, "Value").get(), levels - 1);
  Quantity inner = unwrapped(property(array, "value").get(), levels - 1);
  const Unit unit = unit_of(array);
  if (unit.id() == 0) return inner;
  return {told_in(std::move(inner), unit, value_class), unit};
}

/// Real and imaginary parts by themselves; the offset of a unit belongs to the real part.
Numbers convert_each(Numbers numbers, const Unit& from, const Unit& to) {
  const double zero = core::convert(0, from, to);
  if (zero == 0 && core::convert(1, from, to) == 1) return numbers;
  if (numbers.class_id != cvSINGLE_CLASS) numbers.class_id = cvDOUBLE_CLASS;
  for (double& part : numbers.re) part = core::convert(part, from, to);
  for (double& part : numbers.im) part = core::convert(part, from, to) - zero;
  return numbers;
}

}  // namespace

Quantity quantity_of(const cvArray_tag* array) {
  constexpr int levels = 8;  // a parameter may hold a value with a unit, but no endless chain
  return unwrapped(array, levels);
}

Quantity quantity_of(const Value& value) {
  if (value.is_number()) return {Value(value.number()), {}};
  return quantity_of(value.array());
}

Value value_of(Quantity quantity) {
  if (!quantity.has_unit()) return std::move(quantity.numbers);
  return value_object(std::move(quantity.numbers).release(), unit_text(quantity.unit));
}

cvUniquePtr value_object(cvUniquePtr numbers, const std::string& unit) {
  if (!holds_numbers(numbers.get()) || cvIsChar(numbers.get()))
    throw_runtime_error("NotNumeric", cvGetClassName(numbers.get()));
  cvUniquePtr object(cvCreateObject(value_class));
  cvSetProperty(object.get(), 0, "value", numbers.release());
  cvSetProperty(object.get(), 0, "unit", cvCreateString(unit));
  return object;
}

const std::string& unit_text(const Unit& unit) {
  return core::ExprString(unit).text();
}

Unit one() {
  static const Unit unit = core::parse("1");
  return unit;
}

Value converted(Value numbers, const Unit& from, const Unit& to) {
  if (from == to) return numbers;
  if (numbers.is_number()) return core::convert(numbers.number(), from, to);
  return array_of(convert_each(numbers_of(numbers), from, to));
}

Value told_in(Quantity quantity, const Unit& unit, const std::string& operation) {
  if (!quantity.has_unit()) return std::move(quantity.numbers);
  if (!core::commensurable(quantity.unit, unit)) {
    throw_runtime_error("UnitsDiffer", operation, unit_text(unit), unit_text(quantity.unit));
  }
  return converted(std::move(quantity.numbers), quantity.unit, unit);
}

Unit to_common_unit(std::vector<Value>& values, const std::string& operation) {
  std::vector<Quantity> quantities;
  Unit unit;
  for (const Value& value : values) {
    quantities.push_back(quantity_of(value));
    if (unit.id() == 0) unit = quantities.back().unit;
  }
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = told_in(std::move(quantities[i]), unit, operation);
  return unit;
}

Value dimensionless_numbers(Quantity quantity, const std::string& function) {
  if (!core::is_dimensionless(quantity.unit)) {
    throw_runtime_error("UnitNotTaken", function, unit_text(quantity.unit));
  }
  return quantity.has_unit() ? converted(std::move(quantity.numbers), quantity.unit, one())
                             : std::move(quantity.numbers);
}

Value condition_numbers(Quantity quantity, const std::string& operation) {
  refuse_offset(quantity.unit, operation);
  return std::move(quantity.numbers);
}

void refuse_offset(const Unit& unit, const std::string& operation) {
  if (core::has_offset(unit)) throw_runtime_error("OffsetUnit", operation, unit_text(unit));
}

Shape shape_of(const cvArray_tag* array) {
  if (!is_value_object(array)) return cvGetDimensions(array);
  const Quantity quantity = quantity_of(array);
  return cvGetDimensions(quantity.numbers.array());
}

}  // namespace embedded::scripting_runtime
