#include "embedded/scripting_runtime/arithmetic.hpp"

#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/unit_arithmetic.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace embedded::scripting_runtime {

namespace {

bool is_whole(double value) {
  return value == std::floor(value);
}

/// The result for two real numbers; none where it is complex or logical, or the operator isn't one of arithmetic.
std::optional<double> real_arithmetic(Operator op, double a, double b) {
  switch (op) {
    case Operator::plus:
      return a + b;
    case Operator::minus:
      return a - b;
    case Operator::times:
    case Operator::element_times:
      return a * b;
    case Operator::divide:
    case Operator::element_divide:
      return a / b;
    case Operator::left_divide:
    case Operator::element_left_divide:
      return b / a;
    case Operator::power:
    case Operator::element_power:
      if (a < 0 && !is_whole(b)) return std::nullopt;
      return std::pow(a, b);
    default:
      return std::nullopt;
  }
}

bool real_relation(Operator op, double a, double b) {
  switch (op) {
    case Operator::equal:
      return a == b;
    case Operator::not_equal:
      return a != b;
    case Operator::less:
      return a < b;
    case Operator::less_equal:
      return a <= b;
    case Operator::greater:
      return a > b;
    case Operator::greater_equal:
      return a >= b;
    case Operator::element_and:
      return a != 0 && b != 0;
    default:  // element_or
      return a != 0 || b != 0;
  }
}

bool complex_relation(Operator op, Complex a, Complex b) {
  if (op == Operator::equal) return a == b;
  if (op == Operator::not_equal) return a != b;
  if (op == Operator::element_and || op == Operator::element_or) {
    return real_relation(op, a == 0.0 ? 0 : 1, b == 0.0 ? 0 : 1);
  }
  return real_relation(op, a.real(), b.real());
}

Complex whole_power(Complex base, double exponent) {
  Complex result = 1;
  auto left = static_cast<unsigned long>(std::abs(exponent));
  for (Complex square = base; left != 0; left >>= 1U, square *= square) {
    if ((left & 1U) != 0) result *= square;
  }
  return exponent < 0 ? 1.0 / result : result;
}

Complex complex_power(Complex a, Complex b) {
  constexpr double most_exact = 1024;
  if (b.imag() == 0 && is_whole(b.real()) && std::abs(b.real()) <= most_exact) return whole_power(a, b.real());
  if (b == 0.5) return std::sqrt(a);
  if (a == 0.0) return b.real() > 0 ? 0.0 : std::pow(0.0, b.real());
  return std::pow(a, b);
}

Complex complex_arithmetic(Operator op, Complex a, Complex b) {
  switch (op) {
    case Operator::plus:
      return a + b;
    case Operator::minus:
      return a - b;
    case Operator::times:
    case Operator::element_times:
      return a * b;
    case Operator::divide:
    case Operator::element_divide:
      return b.imag() == 0 ? Complex(a.real() / b.real(), a.imag() / b.real()) : a / b;
    case Operator::left_divide:
    case Operator::element_left_divide:
      return complex_arithmetic(Operator::divide, b, a);
    default:  // powers
      return complex_power(a, b);
  }
}

bool is_relation(Operator op) {
  return op <= Operator::greater_equal;
}

bool is_power(Operator op) {
  return op == Operator::power || op == Operator::element_power;
}

bool needs_complex_power(const Numbers& a, const Numbers& b) {
  return std::any_of(a.re.begin(), a.re.end(), [](double x) { return x < 0; }) &&
         !std::all_of(b.re.begin(), b.re.end(), is_whole);
}

Numbers relation(Operator op, const Numbers& a, const Numbers& b) {
  Numbers result = Numbers::zeros(common_shape(a.shape, b.shape, operator_text(op)), cvLOGICAL_CLASS);
  const bool complex = a.is_complex() || b.is_complex();
  for_each_pair(a.shape, b.shape, result.shape, result.size(), [&](std::size_t k, std::size_t i, std::size_t j) {
    result.re[k] = complex ? complex_relation(op, a.at(i), b.at(j)) : real_relation(op, a.re[i], b.re[j]);
  });
  return result;
}

template <class F>
void fill_real(Numbers& result, const Numbers& a, const Numbers& b, F f) {
  for_each_pair(a.shape, b.shape, result.shape, result.size(),
                [&](std::size_t k, std::size_t i, std::size_t j) { result.re[k] = f(a.re[i], b.re[j]); });
}

/// One loop for each operator, so that the choice isn't made for every element.
void fill_real(Operator op, Numbers& result, const Numbers& a, const Numbers& b) {
  switch (op) {
    case Operator::plus:
      return fill_real(result, a, b, [](double x, double y) { return x + y; });
    case Operator::minus:
      return fill_real(result, a, b, [](double x, double y) { return x - y; });
    case Operator::times:
    case Operator::element_times:
      return fill_real(result, a, b, [](double x, double y) { return x * y; });
    case Operator::divide:
    case Operator::element_divide:
      return fill_real(result, a, b, [](double x, double y) { return x / y; });
    case Operator::left_divide:
    case Operator::element_left_divide:
      return fill_real(result, a, b, [](double x, double y) { return y / x; });
    default:  // powers
      return fill_real(result, a, b, [](double x, double y) { return std::pow(x, y); });
  }
}

bool is_element_wise(Operator op, const Numbers& a, const Numbers& b) {
  switch (op) {
    case Operator::times:
      return a.is_scalar() || b.is_scalar();
    case Operator::divide:
      return b.is_scalar();
    case Operator::left_divide:
      return a.is_scalar();
    case Operator::power:
      return a.is_scalar() && b.is_scalar();
    default:
      return true;
  }
}

Numbers matrix_operation(Operator op, const Numbers& a, const Numbers& b) {
  switch (op) {
    case Operator::times:
      return matrix_product(a, b);
    case Operator::divide:
      return right_division(a, b);
    case Operator::left_divide:
      return left_division(a, b);
    default:
      return matrix_power(a, b);
  }
}

Value numbers_binary(Operator op, const Numbers& a, const Numbers& b) {
  if (is_element_wise(op, a, b)) return array_of(element_wise(op, a, b));
  Numbers result = matrix_operation(op, a, b);
  result.class_id = arithmetic_class(a.class_id, b.class_id);
  return array_of(std::move(result));
}

}  // namespace

std::string operator_text(Operator op) {
  return std::string(expression::symbol(op));
}

Numbers element_wise(Operator op, const Numbers& a, const Numbers& b) {
  if (is_relation(op)) return relation(op, a, b);
  const bool complex = a.is_complex() || b.is_complex() || (is_power(op) && needs_complex_power(a, b));
  const cvClassID class_id = arithmetic_class(a.class_id, b.class_id);
  Numbers result = Numbers::zeros(common_shape(a.shape, b.shape, operator_text(op)), class_id, complex);
  if (!complex) {
    fill_real(op, result, a, b);
    return result;
  }
  for_each_pair(a.shape, b.shape, result.shape, result.size(), [&](std::size_t k, std::size_t i, std::size_t j) {
    const bool real = a.at(i).imag() == 0 && b.at(j).imag() == 0;
    const auto number = real ? real_arithmetic(op, a.re[i], b.re[j]) : std::nullopt;
    result.set(k, number ? Complex(*number) : complex_arithmetic(op, a.at(i), b.at(j)));
  });
  return result;
}

Value binary(Operator op, const Value& a, const Value& b) {
  if (a.is_number() && b.is_number()) {
    if (is_relation(op)) return cvUniquePtr(cvCreateLogicalScalar(real_relation(op, a.number(), b.number())));
    if (const auto result = real_arithmetic(op, a.number(), b.number())) return *result;
  }
  if (is_value_object(a) || is_value_object(b)) return binary_with_units(op, a, b);
  return numbers_binary(op, numbers_of(a), numbers_of(b));
}

Value unary(Operator op, const Value& a) {
  if (a.is_number() && op != Operator::not_) return op == Operator::minus ? -a.number() : a.number();
  if (is_value_object(a)) return unary_with_units(op, a);
  Numbers numbers = numbers_of(a);
  if (op == Operator::not_) {
    Numbers result = Numbers::zeros(numbers.shape, cvLOGICAL_CLASS);
    for (std::size_t i = 0; i < numbers.size(); ++i) result.re[i] = numbers.at(i) == 0.0 ? 1 : 0;
    return array_of(std::move(result));
  }
  numbers.class_id = arithmetic_class(numbers.class_id, cvDOUBLE_CLASS);
  if (op == Operator::minus) {
    for (double& part : numbers.re) part = -part;
    for (double& part : numbers.im) part = -part;
  }
  return array_of(std::move(numbers));
}

Value transpose(Operator op, const Value& a) {
  if (a.is_number()) return a.number();
  if (is_value_object(a)) {
    Quantity quantity = quantity_of(a);
    return value_of({transpose(op, quantity.numbers), quantity.unit});
  }
  cvUniquePtr result = transposed(a.array());
  if (op == Operator::transpose || !cvIsComplex(result.get())) return result;
  Numbers numbers = numbers_of(result.get());
  for (double& part : numbers.im) part = -part;
  return array_of(std::move(numbers));
}

Value range(const Value& first, const Value& step, const Value& last) {
  if (is_value_object(first) || is_value_object(step) || is_value_object(last)) {
    return range_with_units(first, step, last);
  }
  cvClassID class_id = cvDOUBLE_CLASS;
  double bounds[3] = {0, 0, 0};
  const Value* values[3] = {&first, &step, &last};
  for (int i = 0; i < 3; ++i) {
    const Numbers numbers = numbers_of(*values[i]);
    if (numbers.size() == 0) return array_of(Numbers::row({}));
    bounds[i] = numbers.re[0];
    class_id = arithmetic_class(class_id, numbers.class_id);
  }
  const double steps = (bounds[2] - bounds[0]) / bounds[1];
  if (std::isnan(steps)) return bounds[1] == 0 ? Value(array_of(Numbers::row({}))) : Value(std::nan(""));
  constexpr double tolerance = 3e-16;  // 0:0.1:0.3 has four elements though 0.3/0.1 is a bit below 3
  const double count = bounds[1] == 0 ? 0 : std::floor(steps * (1 + tolerance)) + 1;
  Numbers result = Numbers::zeros({1, dimension_from(count)}, class_id);
  for (std::size_t i = 0; i < result.size(); ++i) result.re[i] = bounds[0] + static_cast<double>(i) * bounds[1];
  return array_of(std::move(result));
}

}  // namespace embedded::scripting_runtime
