#pragma once

// Numeric arrays taken apart for computations, and the shapes that computations meet.

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/value.hpp"

#include <algorithm>
#include <complex>
#include <vector>

namespace embedded::scripting_runtime {

using Complex = std::complex<double>;

/// A numeric, logical or character array by columns.
struct Numbers {
  Shape shape{0, 0};
  cvClassID class_id = cvDOUBLE_CLASS;
  std::vector<double> re;
  std::vector<double> im;  ///< empty for a real array

  /// Zeros of a shape within the limits.
  static Numbers zeros(Shape shape, cvClassID class_id = cvDOUBLE_CLASS, bool complex = false);
  static Numbers scalar(double value) { return {{1, 1}, cvDOUBLE_CLASS, {value}, {}}; }
  static Numbers row(std::vector<double> values);

  std::size_t size() const { return re.size(); }
  bool is_complex() const { return !im.empty(); }
  bool is_scalar() const { return re.size() == 1; }
  bool is_matrix() const { return shape.size() == 2; }
  std::size_t rows() const { return shape[0]; }
  std::size_t columns() const { return re.empty() ? (shape.size() == 2 ? shape[1] : 0) : re.size() / shape[0]; }
  Complex at(std::size_t i) const { return {re[i], im.empty() ? 0.0 : im[i]}; }
  void set(std::size_t i, Complex value) {
    re[i] = value.real();
    im[i] = value.imag();
  }
};

/// Numeric, logical or character arrays.
bool holds_numbers(const cvArray_tag* array);

/// Objects with a value count as that, told in "1"; a unit that measures something is never dropped.
/// @throws "NotNumeric" (class name) for what holds no numbers, "UnitNotExpected" (unit)
Numbers numbers_of(const cvArray_tag* array);
Numbers numbers_of(const Value& value);
/// An imaginary part of zeros is dropped.
cvUniquePtr array_of(Numbers numbers);

/// Whether a number or every element of a non-empty array is other than zero: the truth of conditions.
bool is_true(const Value& value);

bool is_integer_class(cvClassID class_id);
/// Class of the result of arithmetic. @throws "MixedIntegers" (class, class)
cvClassID arithmetic_class(cvClassID a, cvClassID b);
const char* class_name_of(cvClassID class_id);

/// Shape of an element-wise result; dimensions of 1 stretch. @throws "SizeMismatch" (operation, shape, shape)
Shape common_shape(const Shape& a, const Shape& b, std::string_view operation);

/// Calls `f(k, i, j)` for each element k of `result`, a common shape of `a` and `b`, with the elements i and j that
/// meet.
template <class F>
void for_each_pair(const Shape& a, const Shape& b, const Shape& result, std::size_t count, F f) {
  if (a == b) {
    constexpr std::size_t piece = 4096;  // between looks for the user's interrupt
    for (std::size_t begin = 0; begin < count; begin += piece) {
      check_interrupt();
      for (std::size_t k = begin; k < std::min(begin + piece, count); ++k) f(k, k, k);
    }
    return;
  }
  InterruptPoll poll;
  const auto stride = [&](const Shape& shape, std::size_t d, std::size_t before) {
    return d < shape.size() && shape[d] != 1 ? before : std::size_t{0};
  };
  std::vector<std::size_t> at(result.size()), a_strides(result.size()), b_strides(result.size());
  std::size_t a_size = 1, b_size = 1;
  for (std::size_t d = 0; d < result.size(); ++d) {
    a_strides[d] = stride(a, d, a_size);
    b_strides[d] = stride(b, d, b_size);
    a_size *= d < a.size() ? a[d] : 1;
    b_size *= d < b.size() ? b[d] : 1;
  }
  std::size_t i = 0, j = 0;
  for (std::size_t k = 0; k < count; ++k) {
    poll.step();
    f(k, i, j);
    for (std::size_t d = 0; d < at.size(); ++d) {
      i += a_strides[d];
      j += b_strides[d];
      if (++at[d] < result[d]) break;
      i -= a_strides[d] * result[d];
      j -= b_strides[d] * result[d];
      at[d] = 0;
    }
  }
}

}  // namespace embedded::scripting_runtime
