// Functions of single numbers that aren't part of every library: angles in degrees, exp and log near 0 and 1,
// factorials.

#include "embedded/scripting_runtime/builtins/element_wise.hpp"

#include "embedded/scripting_runtime/display.hpp"

#include <cmath>

namespace embedded::scripting_runtime {

namespace {

constexpr double degree = 3.14159265358979323846 / 180;
constexpr double right_angle = 90;
constexpr double full_circle = 360;

/// Exact where the result is a whole number or a half; from elsewhere to the nearest axis, so that nothing is lost far
/// out.
double sine_of_degrees(double x) {
  constexpr double half_at = 30;
  double angle = std::remainder(x, full_circle);
  if (std::abs(angle) > right_angle) angle = std::copysign(2 * right_angle, angle) - angle;
  if (std::abs(angle) == half_at) return std::copysign(0.5, angle);
  if (std::abs(angle) <= right_angle / 2) return std::sin(angle * degree);
  return std::copysign(std::cos((right_angle - std::abs(angle)) * degree), angle);
}
double cosine_of_degrees(double x) {
  return sine_of_degrees(right_angle - std::abs(std::remainder(x, full_circle)));
}
double tangent_of_degrees(double x) {
  return sine_of_degrees(x) / cosine_of_degrees(x);
}
double to_radians(double x) {
  return x * degree;
}
double to_degrees(double x) {
  return x / degree;
}

template <Complex (*F)(const Complex&)>
Complex of_degrees(const Complex& z) {
  return F(z * degree);
}
Complex sine(const Complex& z) {
  return std::sin(z);
}
Complex cosine(const Complex& z) {
  return std::cos(z);
}
Complex tangent(const Complex& z) {
  return std::tan(z);
}
Complex complex_to_radians(const Complex& z) {
  return z * degree;
}
Complex complex_to_degrees(const Complex& z) {
  return z / degree;
}

double exp_less_one(double x) {
  return std::expm1(x);
}
Complex complex_exp_less_one(const Complex& z) {
  return std::exp(z) - 1.0;
}
double log_of_one_more(double x) {
  return std::log1p(x);
}
Complex complex_log_of_one_more(const Complex& z) {
  return std::log(1.0 + z);
}
void log1p(Call& call) {
  map_numbers<log_of_one_more, complex_log_of_one_more>(call, -1, infinite);
}

/// Rounded once.
double factorial_of(double n) {
  constexpr double last = 170;
  if (n > last) return infinite;
  long double product = 1;
  for (double factor = 2; factor <= n; ++factor) product *= factor;
  return static_cast<double>(product);
}

void factorial(Call& call) {
  Numbers n = numbers_of(call[0]);
  n.class_id = arithmetic_class(n.class_id, cvDOUBLE_CLASS);
  for (std::size_t i = 0; i < n.size(); ++i) {
    if (n.is_complex() || !(n.re[i] >= 0) || n.re[i] != std::floor(n.re[i])) {
      throw_runtime_error("NotACount", std::string(call.name),
                          n.is_complex() ? "a complex number" : number_text(n.re[i]));
    }
    n.re[i] = factorial_of(n.re[i]);
  }
  call.give(array_of(std::move(n)));
}

}  // namespace

std::vector<Builtin> special_function_builtins() {
  return {{"sind", 1, 1, everywhere<sine_of_degrees, of_degrees<sine>>},
          {"cosd", 1, 1, everywhere<cosine_of_degrees, of_degrees<cosine>>},
          {"tand", 1, 1, everywhere<tangent_of_degrees, of_degrees<tangent>>},
          {"deg2rad", 1, 1, everywhere<to_radians, complex_to_radians>},
          {"rad2deg", 1, 1, everywhere<to_degrees, complex_to_degrees>},
          {"expm1", 1, 1, everywhere<exp_less_one, complex_exp_less_one>},
          {"log1p", 1, 1, log1p},
          {"factorial", 1, 1, factorial}};
}

}  // namespace embedded::scripting_runtime
