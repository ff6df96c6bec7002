#pragma once

// The operators of the language on values.

#include "embedded/expression/tree.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/value.hpp"

namespace embedded::scripting_runtime {

using expression::Operator;

/// Any operator with two operands but && and ||. Element-wise ones stretch dimensions of 1.
/// @throws "SizeMismatch", "MixedIntegers", "NotNumeric", "NotMatrix", "NotSquare"
Value binary(Operator op, const Value& a, const Value& b);
/// plus, minus and not_.
Value unary(Operator op, const Value& a);
/// transpose and conjugate_transpose.
Value transpose(Operator op, const Value& a);
/// first : step : last, a row.
Value range(const Value& first, const Value& step, const Value& last);

/// Element-wise.
Numbers element_wise(Operator op, const Numbers& a, const Numbers& b);

// Matrix algebra.
Numbers matrix_product(const Numbers& a, const Numbers& b);
/// The x with a*x = b: exact for a square a, least squares otherwise.
Numbers left_division(const Numbers& a, const Numbers& b);
Numbers right_division(const Numbers& a, const Numbers& b);
Numbers matrix_power(const Numbers& a, const Numbers& b);
/// Of a square matrix; 1 of one without elements. @throws "NotMatrix", "NotSquare" (shape)
Numbers determinant(const Numbers& a);
/// Rows and columns exchanged, without conjugation.
Numbers transposed_numbers(const Numbers& a);

/// The operator as it is written, for messages.
std::string operator_text(Operator op);

}  // namespace embedded::scripting_runtime
