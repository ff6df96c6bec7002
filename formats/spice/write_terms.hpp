// Terms of an expression that is written for a netlist, with the units that the model's language computes with. A text
// is always told in the base unit of its dimension, as netlists know no others; what the language tells in another unit
// is scaled where a bare number meets it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/units/units.hpp"

namespace kinemo::formats::spice {

/// How tightly a text binds.
enum class TermLevel { choice, or_else, and_also, comparison, additive, multiplicative, sign, atom };

struct Term {
  std::string text;
  TermLevel level = TermLevel::atom;
  units2::core::AbstractExpr unit = {};  ///< in which the language tells the value; the empty one for a bare number
};

/// Raised where netlists can't say what the expression says; the program doesn't see it, but the reason in it.
struct NotWritable {
  std::string reason;
};

Term bracketed(Term term);
/// Two terms around an operator of that level, brackets where they are needed.
Term joined(Term left, std::string_view symbol, Term right, TermLevel level);
/// The same value told in another unit: as the text of a base unit, or of `unit` itself.
Term scaled(Term term, double factor, double offset = 0);
/// The text that tells the term in the unit; bare numbers are told in it already. @throws NotWritable
Term told_in(Term term, const units2::core::AbstractExpr& unit);
/// A bare number told in the unit, or a value converted to it. @throws NotWritable
Term with_unit(Term term, const units2::core::AbstractExpr& unit);

/// Operators as the language has them; each @throws NotWritable where it refuses the units.
Term sum(std::string_view symbol, Term left, Term right);
Term comparison(std::string_view symbol, Term left, Term right);
Term product(Term left, Term right);
Term quotient(Term left, Term right);
/// `exponent` is the number that the right term is, where it is one.
Term power(Term base, Term exponent, const std::optional<double>& number);
/// Gives both terms one unit, that of the first which has one.
void make_common(Term& left, Term& right);
/// A plain number; angles are told in rad.
Term dimensionless(Term term);
/// Units with an offset are points on a scale and no factors.
void refuse_offset(const Term& term);

}  // namespace kinemo::formats::spice
