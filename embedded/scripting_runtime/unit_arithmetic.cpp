#include "embedded/scripting_runtime/unit_arithmetic.hpp"

#include "embedded/scripting_runtime/display.hpp"

#include <cmath>
#include <optional>

namespace embedded::scripting_runtime {

namespace core = units2::core;

namespace {

struct Fraction {
  int numerator;
  int denominator;
};

/// An exponent that units can take.
std::optional<Fraction> fraction_of(double number) {
  constexpr int highest_denominator = 12;
  constexpr double highest = 255;
  constexpr double rounding = 1e-12;
  if (!(std::abs(number) <= highest)) return std::nullopt;
  for (int denominator = 1; denominator <= highest_denominator; ++denominator) {
    const double numerator = std::round(number * denominator);
    if (std::abs(number * denominator - numerator) < rounding)
      return Fraction{static_cast<int>(numerator), denominator};
  }
  return std::nullopt;
}

std::string exponent_text(double exponent) {
  constexpr int digits = 6;
  return number_text(exponent, digits);
}

/// One of the operands has no unit: it takes that of the other, as a step along it where that has an offset.
Quantity sum_with_number(Operator op, Quantity a, Quantity b) {
  const bool point_is_taken_away = op == Operator::minus && core::has_offset(b.unit);
  const Unit unit = point_is_taken_away ? core::difference_unit(b.unit) : a.has_unit() ? a.unit : b.unit;
  return {binary(op, a.numbers, b.numbers), unit};
}

Quantity sum(Operator op, Quantity a, Quantity b) {
  if (!a.has_unit() || !b.has_unit()) return sum_with_number(op, std::move(a), std::move(b));
  if (!core::commensurable(b.unit, a.unit)) {
    throw_runtime_error("UnitsDiffer", operator_text(op), unit_text(a.unit), unit_text(b.unit));
  }
  const bool two_points = core::has_offset(a.unit) && core::has_offset(b.unit);
  if (two_points && op == Operator::plus) throw_runtime_error("OffsetUnit", operator_text(op), unit_text(a.unit));
  const Unit other = core::has_offset(a.unit) && !two_points ? core::difference_unit(a.unit) : a.unit;
  const Value right = converted(std::move(b.numbers), b.unit, other);
  return {binary(op, a.numbers, right), two_points ? core::difference_unit(a.unit) : a.unit};
}

Unit product_unit(Operator op, const Unit& a, const Unit& b) {
  switch (op) {
    case Operator::times:
    case Operator::element_times:
      return core::product(a, b);
    case Operator::divide:
    case Operator::element_divide:
      return core::quotient(a, b);
    default:  // left_divide, element_left_divide
      return core::quotient(b, a);
  }
}

/// A bare factor leaves the unit as it was told, percent or degrees too.
Quantity product(Operator op, const Quantity& a, const Quantity& b) {
  refuse_offset(a.unit, operator_text(op));
  refuse_offset(b.unit, operator_text(op));
  const Unit unit = product_unit(op, a.unit, b.unit);
  Quantity result{binary(op, a.numbers, b.numbers), unit};
  return unit == a.unit || unit == b.unit ? std::move(result) : simplified(std::move(result));
}

Quantity power(Operator op, Quantity base, Quantity exponent) {
  refuse_offset(base.unit, operator_text(op));
  const Value power = dimensionless_numbers(std::move(exponent), operator_text(op));
  if (core::is_dimensionless(base.unit)) {
    const bool told = base.has_unit();
    return {binary(op, dimensionless_numbers(std::move(base), operator_text(op)), power), told ? one() : Unit()};
  }
  const Numbers number = numbers_of(power);
  if (!number.is_scalar() || number.is_complex()) {
    throw_runtime_error("UnitPower", unit_text(base.unit), "[" + shape_text(number.shape) + "]");
  }
  const Unit unit = power_of_unit(base, number.re[0]);
  return simplified({binary(op, base.numbers, power), unit});
}

Value compared(Operator op, const Value& a, const Value& b) {
  std::vector<Value> operands;
  operands.push_back(Value::of(a.array()));
  operands.push_back(Value::of(b.array()));
  to_common_unit(operands, operator_text(op));
  return binary(op, operands[0], operands[1]);
}

}  // namespace

Quantity simplified(Quantity quantity) {
  if (!quantity.has_unit() || quantity.unit == one() || !core::is_dimensionless(quantity.unit)) return quantity;
  return {converted(std::move(quantity.numbers), quantity.unit, one()), one()};
}

Unit power_of_unit(Quantity& base, double exponent) {
  const auto fraction = fraction_of(exponent);
  if (!fraction) throw_runtime_error("UnitPower", unit_text(base.unit), exponent_text(exponent));
  if (!core::has_power(base.unit, fraction->numerator, fraction->denominator)) {
    const Unit coherent = core::base_unit(base.unit);
    if (!core::has_power(coherent, fraction->numerator, fraction->denominator)) {
      throw_runtime_error("UnitPower", unit_text(base.unit), exponent_text(exponent));
    }
    base = {converted(std::move(base.numbers), base.unit, coherent), coherent};
  }
  return core::power(base.unit, fraction->numerator, fraction->denominator);
}

Value binary_with_units(Operator op, const Value& a, const Value& b) {
  if (op >= Operator::equal && op <= Operator::greater_equal) return compared(op, a, b);
  Quantity left = quantity_of(a);
  Quantity right = quantity_of(b);
  switch (op) {
    case Operator::plus:
    case Operator::minus:
      return value_of(sum(op, std::move(left), std::move(right)));
    case Operator::element_and:
    case Operator::element_or:
      return binary(op, condition_numbers(std::move(left), operator_text(op)),
                    condition_numbers(std::move(right), operator_text(op)));
    case Operator::power:
    case Operator::element_power:
      return value_of(power(op, std::move(left), std::move(right)));
    default:
      return value_of(product(op, left, right));
  }
}

Value unary_with_units(Operator op, const Value& a) {
  Quantity quantity = quantity_of(a);
  if (op != Operator::plus) refuse_offset(quantity.unit, operator_text(op));
  Value numbers = unary(op, quantity.numbers);
  if (op == Operator::not_) return numbers;
  return value_of({std::move(numbers), quantity.unit});
}

/// The step of points on a scale is a difference.
Value range_with_units(const Value& first, const Value& step, const Value& last) {
  std::vector<Value> ends;
  ends.push_back(Value::of(first.array()));
  ends.push_back(Value::of(last.array()));
  Quantity by = quantity_of(step);
  refuse_offset(by.unit, ":");
  Unit unit = to_common_unit(ends, ":");
  if (unit.id() == 0) unit = by.unit;
  const Unit difference = core::has_offset(unit) ? core::difference_unit(unit) : unit;
  return value_of({range(ends[0], told_in(std::move(by), difference, ":"), ends[1]), unit});
}

}  // namespace embedded::scripting_runtime
