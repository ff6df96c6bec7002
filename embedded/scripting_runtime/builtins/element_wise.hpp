#pragma once

// Bodies of built-in functions that take each number by itself: one function for real numbers, one for complex ones.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <limits>

namespace embedded::scripting_runtime {

using RealFunction = double (*)(double);
using ComplexFunction = Complex (*)(const Complex&);

constexpr double infinite = std::numeric_limits<double>::infinity();

/// Real numbers from `low` to `high` stay real.
template <RealFunction Real, ComplexFunction ForComplex>
void map_numbers(Call& call, double low, double high) {
  Numbers x = numbers_of(call[0]);
  x.class_id = arithmetic_class(x.class_id, cvDOUBLE_CLASS);
  const bool real = !x.is_complex() &&
                    std::none_of(x.re.begin(), x.re.end(), [&](double value) { return value < low || value > high; });
  if (!real) x.im.resize(x.size());
  InterruptPoll poll;
  for (std::size_t i = 0; i < x.size(); ++i) {
    poll.step();
    const bool inside = x.at(i).imag() == 0 && !(x.re[i] < low) && !(x.re[i] > high);
    if (real) {
      x.re[i] = Real(x.re[i]);
    } else {
      x.set(i, inside ? Complex(Real(x.re[i])) : ForComplex(x.at(i)));
    }
  }
  call.give(array_of(std::move(x)));
}

template <RealFunction Real, ComplexFunction ForComplex>
void everywhere(Call& call) {
  map_numbers<Real, ForComplex>(call, -infinite, infinite);
}
template <RealFunction Real, ComplexFunction ForComplex>
void from_zero(Call& call) {
  map_numbers<Real, ForComplex>(call, 0, infinite);
}
template <RealFunction Real, ComplexFunction ForComplex>
void from_one(Call& call) {
  map_numbers<Real, ForComplex>(call, 1, infinite);
}
template <RealFunction Real, ComplexFunction ForComplex>
void within_one(Call& call) {
  map_numbers<Real, ForComplex>(call, -1, 1);
}

}  // namespace embedded::scripting_runtime
