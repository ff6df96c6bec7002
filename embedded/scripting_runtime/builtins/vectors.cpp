// Functions of vectors and matrices.

#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/builtin.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::scripting_runtime {

namespace {

bool is_vector(const Numbers& x) {
  return x.is_matrix() && (x.shape[0] == 1 || x.shape[1] == 1);
}

void check_matrix(const Numbers& x) {
  if (!x.is_matrix()) throw_runtime_error("NotMatrix", shape_text(x.shape));
}

void put(Numbers& to, std::size_t at, const Numbers& from, std::size_t i) {
  to.re[at] = from.re[i];
  if (to.is_complex()) to.im[at] = from.im[i];
}

/// A matrix with a vector on its diagonal.
Numbers matrix_with_diagonal(const Numbers& x) {
  Numbers result = Numbers::zeros({x.size(), x.size()}, x.class_id, x.is_complex());
  for (std::size_t i = 0; i < x.size(); ++i) put(result, i * x.size() + i, x, i);
  return result;
}

void diagonal(Call& call) {
  const Numbers x = numbers_of(call[0]);
  check_matrix(x);
  if (is_vector(x)) return call.give(array_of(matrix_with_diagonal(x)));
  const std::size_t count = std::min(x.shape[0], x.shape[1]);
  Numbers result = Numbers::zeros({count, 1}, x.class_id, x.is_complex());
  for (std::size_t i = 0; i < count; ++i) put(result, i, x, i * x.shape[0] + i);
  call.give(array_of(std::move(result)));
}

/// Differences of neighbours, down the columns of a matrix and along a row.
void differences(Call& call) {
  Numbers x = numbers_of(call[0]);
  check_matrix(x);
  x.class_id = arithmetic_class(x.class_id, cvDOUBLE_CLASS);
  const bool row = x.shape[0] == 1;
  const std::size_t length = row ? x.shape[1] : x.shape[0];
  const std::size_t count = length == 0 ? 0 : length - 1;
  const std::size_t runs = row ? 1 : x.shape[1];
  Numbers result = Numbers::zeros(row ? Shape{1, count} : Shape{count, runs}, x.class_id, x.is_complex());
  for (std::size_t run = 0; run < runs; ++run) {
    for (std::size_t i = 0; i < count; ++i) {
      const Complex step = x.at(run * length + i + 1) - x.at(run * length + i);
      result.re[run * count + i] = step.real();
      if (result.is_complex()) result.im[run * count + i] = step.imag();
    }
  }
  call.give(array_of(std::move(result)));
}

/// Of two vectors; the first one conjugated.
void scalar_product(Call& call) {
  const Numbers a = numbers_of(call[0]);
  const Numbers b = numbers_of(call[1]);
  if (!is_vector(a) || !is_vector(b) || a.size() != b.size()) {
    throw_runtime_error("SizeMismatch", std::string(call.name), shape_text(a.shape), shape_text(b.shape));
  }
  Complex total = 0;
  for (std::size_t i = 0; i < a.size(); ++i) total += std::conj(a.at(i)) * b.at(i);
  const bool complex = a.is_complex() || b.is_complex();
  Numbers result = Numbers::zeros({1, 1}, arithmetic_class(a.class_id, b.class_id), complex);
  result.re[0] = total.real();
  if (complex) result.im[0] = total.imag();
  call.give(array_of(std::move(result)));
}

/// Of vectors of three elements, in the direction of the first.
void vector_product(Call& call) {
  constexpr std::size_t dimensions = 3;
  const Numbers a = numbers_of(call[0]);
  const Numbers b = numbers_of(call[1]);
  if (!is_vector(a) || !is_vector(b) || a.size() != dimensions || b.size() != dimensions) {
    throw_runtime_error("SizeMismatch", std::string(call.name), shape_text(a.shape), shape_text(b.shape));
  }
  Numbers result = Numbers::zeros(a.shape, arithmetic_class(a.class_id, b.class_id), true);
  for (std::size_t i = 0; i < dimensions; ++i) {
    const std::size_t j = (i + 1) % dimensions;
    const std::size_t k = (i + 2) % dimensions;
    result.set(i, a.at(j) * b.at(k) - a.at(k) * b.at(j));
  }
  call.give(array_of(std::move(result)));
}

void determinant_of(Call& call) {
  call.give(array_of(determinant(numbers_of(call[0]))));
}

void inverse(Call& call) {
  call.give(array_of(matrix_power(numbers_of(call[0]), Numbers::scalar(-1))));
}

/// Scaled by the largest, so that squares neither overflow nor vanish.
double euclidean_norm(const Numbers& x) {
  double largest = 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double size = std::abs(x.at(i));
    if (!(size <= largest)) largest = size;
  }
  if (largest == 0 || !std::isfinite(largest)) return largest;
  double total = 0;
  for (std::size_t i = 0; i < x.size(); ++i) total += std::norm(x.at(i) / largest);
  return largest * std::sqrt(total);
}

double vector_norm(const Numbers& x, double p) {
  if (p == 2) return euclidean_norm(x);
  std::vector<double> sizes;
  for (std::size_t i = 0; i < x.size(); ++i) sizes.push_back(std::abs(x.at(i)));
  if (sizes.empty()) return 0;
  if (std::isinf(p)) {
    return p > 0 ? *std::max_element(sizes.begin(), sizes.end()) : *std::min_element(sizes.begin(), sizes.end());
  }
  double total = 0;
  for (const double size : sizes) total += std::pow(size, p);
  return std::pow(total, 1 / p);
}

/// norm(v), norm(v, p) of a vector; norm(m, 'fro') of anything.
void norm(Call& call) {
  const Numbers x = numbers_of(call[0]);
  if (call.size() > 1 && cvIsChar(call[1]) && call.text(1) == "fro") return call.give(euclidean_norm(x));
  constexpr double usual = 2;
  const double p = call.size() > 1 ? call.number(1) : usual;
  if (!is_vector(x) && x.size() > 0) throw_runtime_error("NotVector", shape_text(x.shape));
  call.give(vector_norm(x, p));
}

}  // namespace

std::vector<Builtin> vector_builtins() {
  return {{"diag", 1, 1, diagonal},      {"diff", 1, 1, differences},
          {"dot", 2, 2, scalar_product}, {"cross", 2, 2, vector_product},
          {"det", 1, 1, determinant_of}, {"inv", 1, 1, inverse},
          {"norm", 1, 2, norm}};
}

}  // namespace embedded::scripting_runtime
