// Functions that work on each number by itself. They are complex where the real ones have no value: sqrt(-1), log(-1).

#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/builtins/element_wise.hpp"

#include <cmath>

namespace embedded::scripting_runtime {

namespace {

template <RealFunction Real>
Complex by_parts(const Complex& z) {
  return {Real(z.real()), Real(z.imag())};
}

Complex complex_log2(const Complex& z) {
  return std::log(z) / std::log(2.0);
}

double sign_of(double x) {
  return x > 0 ? 1 : x < 0 ? -1 : x;
}
Complex complex_sign(const Complex& z) {
  return z == 0.0 ? z : z / std::abs(z);
}

/// Functions of complex numbers whose results are real.
template <double (*F)(Complex)>
void to_real(Call& call) {
  Numbers x = numbers_of(call[0]);
  x.class_id = arithmetic_class(x.class_id, cvDOUBLE_CLASS);
  for (std::size_t i = 0; i < x.size(); ++i) x.re[i] = F(x.at(i));
  x.im.clear();
  call.give(array_of(std::move(x)));
}

double magnitude(Complex z) {
  return std::abs(z);
}
double real_part(Complex z) {
  return z.real();
}
double imaginary_part(Complex z) {
  return z.imag();
}
double angle_of(Complex z) {
  return std::arg(z);
}

void conjugate(Call& call) {
  Numbers x = numbers_of(call[0]);
  for (double& part : x.im) part = -part;
  call.give(array_of(std::move(x)));
}

template <bool (*Test)(Complex)>
void to_logical(Call& call) {
  const Numbers x = numbers_of(call[0]);
  Numbers result = Numbers::zeros(x.shape, cvLOGICAL_CLASS);
  for (std::size_t i = 0; i < x.size(); ++i) result.re[i] = Test(x.at(i)) ? 1 : 0;
  call.give(array_of(std::move(result)));
}

bool any_nan(Complex z) {
  return std::isnan(z.real()) || std::isnan(z.imag());
}
bool any_infinite(Complex z) {
  return std::isinf(z.real()) || std::isinf(z.imag());
}
bool all_finite(Complex z) {
  return std::isfinite(z.real()) && std::isfinite(z.imag());
}

/// Real functions of two numbers.
template <double (*F)(double, double)>
void of_two(Call& call) {
  const Numbers a = numbers_of(call[0]);
  const Numbers b = numbers_of(call[1]);
  Numbers result = Numbers::zeros(common_shape(a.shape, b.shape, call.name), arithmetic_class(a.class_id, b.class_id));
  for_each_pair(a.shape, b.shape, result.shape, result.size(),
                [&](std::size_t k, std::size_t i, std::size_t j) { result.re[k] = F(a.re[i], b.re[j]); });
  call.give(array_of(std::move(result)));
}

double modulo(double a, double b) {
  if (b == 0) return a;
  const double rest = std::fmod(a, b);
  return rest != 0 && (rest < 0) != (b < 0) ? rest + b : rest;
}
double remainder_of(double a, double b) {
  return b == 0 ? std::nan("") : std::fmod(a, b);
}
double angle_of_two(double y, double x) {
  return std::atan2(y, x);
}
double length_of_two(double a, double b) {
  return std::hypot(a, b);
}

template <Operator Op>
void by_operator(Call& call) {
  call.give(std::move(binary(Op, Value::of(call[0]), Value::of(call[1]))).release());
}

/// The choice of an expression: ternary_fcn(condition, value if it is met, value if not).
void chosen(Call& call) {
  call.give(cvUniquePtr(cvCreateSharedCopy(call[call.number(0) != 0 ? 1 : 2])));
}

void one_of_two(Call& call) {
  const Value a = unary(Operator::not_, Value::of(call[0]));
  const Value b = unary(Operator::not_, Value::of(call[1]));
  call.give(std::move(binary(Operator::not_equal, a, b)).release());
}

void negated(Call& call) {
  call.give(std::move(unary(Operator::not_, Value::of(call[0]))).release());
}
void minus_of(Call& call) {
  call.give(std::move(unary(Operator::minus, Value::of(call[0]))).release());
}

// The library's functions have overloads, so each gets a plain function of its own here.
#define KINEMO_REAL(function)        \
  double real_##function(double x) { \
    return std::function(x);         \
  }
#define KINEMO_BOTH(function)                    \
  KINEMO_REAL(function)                          \
  Complex complex_##function(const Complex& z) { \
    return std::function(z);                     \
  }

KINEMO_BOTH(sqrt)
KINEMO_BOTH(sin)
KINEMO_BOTH(cos)
KINEMO_BOTH(tan)
KINEMO_BOTH(asin)
KINEMO_BOTH(acos)
KINEMO_BOTH(atan)
KINEMO_BOTH(sinh)
KINEMO_BOTH(cosh)
KINEMO_BOTH(tanh)
KINEMO_BOTH(asinh)
KINEMO_BOTH(acosh)
KINEMO_BOTH(atanh)
KINEMO_BOTH(exp)
KINEMO_BOTH(log)
KINEMO_BOTH(log10)
KINEMO_REAL(log2)
KINEMO_REAL(floor)
KINEMO_REAL(ceil)
KINEMO_REAL(round)
KINEMO_REAL(trunc)

#undef KINEMO_BOTH
#undef KINEMO_REAL

std::vector<Builtin> elementary() {
  return {{"sqrt", 1, 1, from_zero<real_sqrt, complex_sqrt>},
          {"sin", 1, 1, everywhere<real_sin, complex_sin>},
          {"cos", 1, 1, everywhere<real_cos, complex_cos>},
          {"tan", 1, 1, everywhere<real_tan, complex_tan>},
          {"asin", 1, 1, within_one<real_asin, complex_asin>},
          {"acos", 1, 1, within_one<real_acos, complex_acos>},
          {"atan", 1, 1, everywhere<real_atan, complex_atan>},
          {"sinh", 1, 1, everywhere<real_sinh, complex_sinh>},
          {"cosh", 1, 1, everywhere<real_cosh, complex_cosh>},
          {"tanh", 1, 1, everywhere<real_tanh, complex_tanh>},
          {"asinh", 1, 1, everywhere<real_asinh, complex_asinh>},
          {"acosh", 1, 1, from_one<real_acosh, complex_acosh>},
          {"atanh", 1, 1, within_one<real_atanh, complex_atanh>},
          {"exp", 1, 1, everywhere<real_exp, complex_exp>},
          {"log", 1, 1, from_zero<real_log, complex_log>},
          {"log2", 1, 1, from_zero<real_log2, complex_log2>},
          {"log10", 1, 1, from_zero<real_log10, complex_log10>},
          {"floor", 1, 1, everywhere<real_floor, by_parts<real_floor>>},
          {"ceil", 1, 1, everywhere<real_ceil, by_parts<real_ceil>>},
          {"round", 1, 1, everywhere<real_round, by_parts<real_round>>},
          {"fix", 1, 1, everywhere<real_trunc, by_parts<real_trunc>>},
          {"sign", 1, 1, everywhere<sign_of, complex_sign>}};
}

}  // namespace

std::vector<Builtin> mathematics_builtins() {
  std::vector<Builtin> result = elementary();
  const std::vector<Builtin> more = {{"abs", 1, 1, to_real<magnitude>},
                                     {"real", 1, 1, to_real<real_part>},
                                     {"imag", 1, 1, to_real<imaginary_part>},
                                     {"angle", 1, 1, to_real<angle_of>},
                                     {"conj", 1, 1, conjugate},
                                     {"isnan", 1, 1, to_logical<any_nan>},
                                     {"isinf", 1, 1, to_logical<any_infinite>},
                                     {"isfinite", 1, 1, to_logical<all_finite>},
                                     {"mod", 2, 2, of_two<modulo>},
                                     {"rem", 2, 2, of_two<remainder_of>},
                                     {"atan2", 2, 2, of_two<angle_of_two>},
                                     {"hypot", 2, 2, of_two<length_of_two>},
                                     {"power", 2, 2, by_operator<Operator::element_power>},
                                     {"plus", 2, 2, by_operator<Operator::plus>},
                                     {"minus", 2, 2, by_operator<Operator::minus>},
                                     {"times", 2, 2, by_operator<Operator::element_times>},
                                     {"mtimes", 2, 2, by_operator<Operator::times>},
                                     {"rdivide", 2, 2, by_operator<Operator::element_divide>},
                                     {"and", 2, 2, by_operator<Operator::element_and>},
                                     {"or", 2, 2, by_operator<Operator::element_or>},
                                     {"xor", 2, 2, one_of_two},
                                     {"ternary_fcn", 3, 3, chosen},
                                     {"not", 1, 1, negated},
                                     {"uminus", 1, 1, minus_of}};
  result.insert(result.end(), more.begin(), more.end());
  return result;
}

}  // namespace embedded::scripting_runtime
