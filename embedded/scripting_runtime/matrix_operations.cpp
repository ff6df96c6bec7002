// Matrix algebra, real where both operands are and complex otherwise.

#include "embedded/scripting_runtime/arithmetic.hpp"
#include "platform/foundation/warning.hpp"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>

namespace embedded::scripting_runtime {

namespace {

template <class Scalar>
using Matrix = Eigen::Matrix<Scalar, Eigen::Dynamic, Eigen::Dynamic>;

Eigen::Index index(std::size_t size) {
  return static_cast<Eigen::Index>(size);
}

void check_matrix(const Numbers& a) {
  if (!a.is_matrix()) throw_runtime_error("NotMatrix", shape_text(a.shape));
}

template <class Scalar>
Matrix<Scalar> matrix_of(const Numbers& a) {
  Matrix<Scalar> result(index(a.shape[0]), index(a.shape[1]));
  for (std::size_t i = 0; i < a.size(); ++i) {
    if constexpr (std::is_same_v<Scalar, double>) {
      result.data()[i] = a.re[i];
    } else {
      result.data()[i] = a.at(i);
    }
  }
  return result;
}

template <class Scalar>
Numbers numbers_from(const Matrix<Scalar>& a) {
  constexpr bool complex = !std::is_same_v<Scalar, double>;
  Numbers result =
      Numbers::zeros({static_cast<std::size_t>(a.rows()), static_cast<std::size_t>(a.cols())}, cvDOUBLE_CLASS, complex);
  for (std::size_t i = 0; i < result.size(); ++i) {
    if constexpr (complex) {
      result.set(i, a.data()[i]);
    } else {
      result.re[i] = a.data()[i];
    }
  }
  return result;
}

/// The product, by groups of columns between which the user can end it.
template <class Scalar>
Matrix<Scalar> multiplied(const Matrix<Scalar>& a, const Matrix<Scalar>& b) {
  constexpr Eigen::Index multiplications = Eigen::Index{1} << 27;
  const Eigen::Index group = std::max<Eigen::Index>(1, multiplications / std::max<Eigen::Index>(1, a.size()));
  Matrix<Scalar> result(a.rows(), b.cols());
  for (Eigen::Index begin = 0; begin < b.cols(); begin += group) {
    check_interrupt();
    const Eigen::Index count = std::min(group, b.cols() - begin);
    result.middleCols(begin, count).noalias() = a * b.middleCols(begin, count);
  }
  return result;
}

void warn_if_singular(double reciprocal_condition) {
  constexpr double least = 2.2e-16;
  if (reciprocal_condition >= least) return;
  kmf::Warning::get().issueWarning(kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "SingularMatrix")));
}

template <class Scalar>
Matrix<Scalar> solve(const Matrix<Scalar>& a, const Matrix<Scalar>& b) {
  if (a.size() == 0 || b.size() == 0) return Matrix<Scalar>::Zero(a.cols(), b.cols());
  if (a.rows() != a.cols()) return a.colPivHouseholderQr().solve(b);
  const Eigen::PartialPivLU<Matrix<Scalar>> factors(a);
  warn_if_singular(factors.rcond());
  return factors.solve(b);
}

template <class Scalar>
Matrix<Scalar> whole_power(Matrix<Scalar> base, double exponent) {
  Matrix<Scalar> result = Matrix<Scalar>::Identity(base.rows(), base.cols());
  if (exponent < 0) base = solve<Scalar>(base, result);
  for (auto left = static_cast<unsigned long>(std::abs(exponent)); left != 0; left >>= 1U) {
    if ((left & 1U) != 0) result = multiplied(result, base);
    if (left > 1) base = multiplied(base, base);
  }
  return result;
}

/// What a computation without a result gives, as for a matrix with NaN in it.
Numbers not_numbers(const Shape& shape) {
  Numbers result = Numbers::zeros(shape);
  for (double& value : result.re) value = std::nan("");
  return result;
}

/// V * f(D) / V of the matrix V * D / V.
template <class F>
Numbers by_eigenvalues(const Numbers& a, F f) {
  if (a.size() == 0) return a;
  const Matrix<Complex> matrix = matrix_of<Complex>(a);
  const double largest = matrix.cwiseAbs().maxCoeff<Eigen::PropagateNaN>();
  // The solver reads beyond its arrays where it can't converge, so it gets finite numbers of the size of 1 only.
  if (!std::isfinite(largest)) return not_numbers(a.shape);
  const double scale = largest > 0 ? largest : 1;
  const Eigen::ComplexEigenSolver<Matrix<Complex>> solver(
      matrix.unaryExpr([&](Complex z) { return Complex(z.real() / scale, z.imag() / scale); }));
  if (solver.info() != Eigen::Success) return not_numbers(a.shape);
  const Matrix<Complex> vectors = solver.eigenvectors();
  Matrix<Complex> scaled = vectors;
  for (Eigen::Index i = 0; i < scaled.cols(); ++i) scaled.col(i) *= f(scale * solver.eigenvalues()(i));
  const Matrix<Complex> result = solve<Complex>(vectors.transpose(), scaled.transpose()).transpose();
  return numbers_from(result);
}

void check_square(const Numbers& a) {
  check_matrix(a);
  if (a.shape[0] != a.shape[1]) throw_runtime_error("NotSquare", shape_text(a.shape));
}

}  // namespace

Numbers matrix_product(const Numbers& a, const Numbers& b) {
  check_matrix(a);
  check_matrix(b);
  if (a.shape[1] != b.shape[0]) throw_runtime_error("SizeMismatch", "*", shape_text(a.shape), shape_text(b.shape));
  checked_count({a.shape[0], b.shape[1]});
  if (a.is_complex() || b.is_complex()) {
    return numbers_from(multiplied(matrix_of<Complex>(a), matrix_of<Complex>(b)));
  }
  return numbers_from(multiplied(matrix_of<double>(a), matrix_of<double>(b)));
}

Numbers left_division(const Numbers& a, const Numbers& b) {
  check_matrix(a);
  check_matrix(b);
  if (a.shape[0] != b.shape[0]) throw_runtime_error("SizeMismatch", "\\", shape_text(a.shape), shape_text(b.shape));
  checked_count({a.shape[1], b.shape[1]});
  if (a.is_complex() || b.is_complex()) return numbers_from(solve(matrix_of<Complex>(a), matrix_of<Complex>(b)));
  return numbers_from(solve(matrix_of<double>(a), matrix_of<double>(b)));
}

Numbers transposed_numbers(const Numbers& a) {
  check_matrix(a);
  Numbers result = Numbers::zeros({a.shape[1], a.shape[0]}, a.class_id, a.is_complex());
  std::size_t k = 0;
  for (std::size_t row = 0; row < a.shape[0]; ++row) {
    for (std::size_t column = 0; column < a.shape[1]; ++column, ++k) {
      result.re[k] = a.re[column * a.shape[0] + row];
      if (a.is_complex()) result.im[k] = a.im[column * a.shape[0] + row];
    }
  }
  return result;
}

Numbers right_division(const Numbers& a, const Numbers& b) {
  check_matrix(a);
  check_matrix(b);
  if (a.shape[1] != b.shape[1]) throw_runtime_error("SizeMismatch", "/", shape_text(a.shape), shape_text(b.shape));
  return transposed_numbers(left_division(transposed_numbers(b), transposed_numbers(a)));
}

Numbers determinant(const Numbers& a) {
  check_square(a);
  if (a.size() == 0) return Numbers::scalar(1);
  if (!a.is_complex()) return Numbers::scalar(matrix_of<double>(a).determinant());
  Numbers result = Numbers::zeros({1, 1}, cvDOUBLE_CLASS, true);
  result.set(0, matrix_of<Complex>(a).determinant());
  return result;
}

Numbers matrix_power(const Numbers& a, const Numbers& b) {
  if (b.is_scalar()) {
    check_square(a);
    const Complex exponent = b.at(0);
    constexpr double most = 1e9;
    const bool whole = exponent.imag() == 0 && exponent.real() == std::floor(exponent.real());
    if (whole && std::abs(exponent.real()) <= most) {
      return a.is_complex() ? numbers_from(whole_power(matrix_of<Complex>(a), exponent.real()))
                            : numbers_from(whole_power(matrix_of<double>(a), exponent.real()));
    }
    return by_eigenvalues(a, [&](Complex value) { return std::pow(value, exponent); });
  }
  if (!a.is_scalar()) throw_runtime_error("SizeMismatch", "^", shape_text(a.shape), shape_text(b.shape));
  check_square(b);
  return by_eigenvalues(b, [&](Complex value) { return std::pow(a.at(0), value); });
}

}  // namespace embedded::scripting_runtime
