#include "formats/spice/write_terms.hpp"

#include <cmath>

#include "formats/spice/expression.hpp"
#include "platform/foundation/exception.hpp"

namespace kinemo::formats::spice {

namespace core = units2::core;
using core::AbstractExpr;

namespace {

bool has_unit(const Term& term) {
  return term.unit.id() != 0;
}

std::string text_of(const AbstractExpr& unit) {
  return "'" + core::ExprString(unit).text() + "'";
}

AbstractExpr one() {
  static const AbstractExpr unit = core::parse("1");
  return unit;
}

/// What made units refuse becomes a reason.
template <class Make>
AbstractExpr made_unit(Make&& make) {
  try {
    return make();
  } catch (const kmf::Exception& error) {
    throw NotWritable{error.what()};
  }
}

/// Operators of one level are read from the left; comparisons and signs are bracketed wherever they are operands.
std::string operand(Term term, TermLevel level, bool is_first) {
  const bool chains = is_first && level != TermLevel::comparison;
  const bool fits = term.level != TermLevel::sign && (chains ? term.level >= level : term.level > level);
  return fits ? std::move(term.text) : bracketed(std::move(term)).text;
}

/// The exponent as numerator and denominator.
std::optional<std::pair<int, int>> fraction_of(double number) {
  constexpr int highest_denominator = 12;
  constexpr double highest = 255;
  for (int denominator = 1; denominator <= highest_denominator && std::fabs(number) <= highest; ++denominator) {
    const double numerator = std::round(number * denominator);
    if (std::fabs(number * denominator - numerator) < 1e-12) {
      return std::pair(static_cast<int>(numerator), denominator);
    }
  }
  return std::nullopt;
}

AbstractExpr power_of_unit(const AbstractExpr& unit, const std::optional<double>& exponent) {
  const auto fraction = exponent ? fraction_of(*exponent) : std::nullopt;
  if (!fraction) {
    throw NotWritable{"a value in " + text_of(unit) + " has an exponent that is no simple number"};
  }
  return made_unit([&] {
    const bool is_whole = core::has_power(unit, fraction->first, fraction->second);
    return core::power(is_whole ? unit : core::base_unit(unit), fraction->first, fraction->second);
  });
}

Term multiplicative(Term left, std::string_view symbol, Term right,
                    AbstractExpr (*unit_of)(const AbstractExpr&, const AbstractExpr&)) {
  refuse_offset(left);
  refuse_offset(right);
  const AbstractExpr unit = made_unit([&] { return unit_of(left.unit, right.unit); });
  Term result = joined(std::move(left), symbol, std::move(right), TermLevel::multiplicative);
  result.unit = unit;
  return result;
}

}  // namespace

Term bracketed(Term term) {
  return {"(" + std::move(term.text) + ")", TermLevel::atom, term.unit};
}

Term joined(Term left, std::string_view symbol, Term right, TermLevel level) {
  std::string text = operand(std::move(left), level, true);
  text += symbol;
  text += operand(std::move(right), level, false);
  return {std::move(text), level, {}};
}

Term scaled(Term term, double factor, double offset) {
  const AbstractExpr unit = term.unit;
  if (factor != 1) {
    term = joined(std::move(term), "*", {number_text(factor)}, TermLevel::multiplicative);
  }
  if (offset != 0) {
    term = joined(std::move(term), offset > 0 ? "+" : "-", {number_text(std::fabs(offset))}, TermLevel::additive);
  }
  term.unit = unit;
  return term;
}

Term told_in(Term term, const AbstractExpr& unit) {
  if (!has_unit(term) || unit.id() == 0) {
    return term;
  }
  if (!core::commensurable(term.unit, unit)) {
    throw NotWritable{"it is told in " + text_of(term.unit) + " and not in " + text_of(unit)};
  }
  const AbstractExpr base = core::base_unit(unit);
  const double offset = core::convert(0, base, unit);
  return scaled(std::move(term), core::convert(1, base, unit) - offset, offset);
}

Term with_unit(Term term, const AbstractExpr& unit) {
  if (unit.id() == 0) {
    return term;
  }
  if (has_unit(term)) {
    if (!core::commensurable(term.unit, unit)) {
      throw NotWritable{"it is told in " + text_of(term.unit) + " and not in " + text_of(unit)};
    }
  } else {
    const AbstractExpr base = made_unit([&] { return core::base_unit(unit); });
    const double offset = core::convert(0, unit, base);
    term = scaled(std::move(term), core::convert(1, unit, base) - offset, offset);
  }
  term.unit = unit;
  return term;
}

void refuse_offset(const Term& term) {
  if (has_unit(term) && core::has_offset(term.unit)) {
    throw NotWritable{"it computes with a value in " + text_of(term.unit) + ", which is a point on a scale"};
  }
}

/// A bare number, or a difference, moves a point on a scale; two points have a difference.
Term sum(std::string_view symbol, Term left, Term right) {
  const bool is_point = has_unit(left) && core::has_offset(left.unit);
  if (!is_point) {
    refuse_offset(right);
    make_common(left, right);
    const AbstractExpr unit = left.unit;
    Term result = joined(std::move(left), symbol, std::move(right), TermLevel::additive);
    result.unit = unit;
    return result;
  }
  const AbstractExpr difference = core::difference_unit(left.unit);
  const bool two_points = has_unit(right) && core::has_offset(right.unit);
  if (two_points && symbol != "-") {
    refuse_offset(right);
  }
  const AbstractExpr unit = two_points ? difference : left.unit;
  right = two_points ? std::move(right) : with_unit(std::move(right), difference);
  Term result = joined(std::move(left), symbol, std::move(right), TermLevel::additive);
  result.unit = unit;
  return result;
}

void make_common(Term& left, Term& right) {
  const AbstractExpr unit = has_unit(left) ? left.unit : right.unit;
  left = with_unit(std::move(left), unit);
  right = with_unit(std::move(right), unit);
}

Term comparison(std::string_view symbol, Term left, Term right) {
  make_common(left, right);
  return joined(std::move(left), symbol, std::move(right), TermLevel::comparison);
}

Term product(Term left, Term right) {
  return multiplicative(std::move(left), "*", std::move(right), core::product);
}

Term quotient(Term left, Term right) {
  return multiplicative(std::move(left), "/", std::move(right), core::quotient);
}

Term power(Term base, Term exponent, const std::optional<double>& number) {
  refuse_offset(base);
  exponent = dimensionless(std::move(exponent));
  const bool is_plain = !has_unit(base) || core::is_dimensionless(base.unit);
  const AbstractExpr unit = !has_unit(base) ? base.unit : is_plain ? one() : power_of_unit(base.unit, number);
  return {"pow(" + base.text + "," + exponent.text + ")", TermLevel::atom, unit};
}

Term dimensionless(Term term) {
  if (has_unit(term) && !core::is_dimensionless(term.unit)) {
    throw NotWritable{"it takes a plain number where there is one in " + text_of(term.unit)};
  }
  term.unit = {};
  return term;
}

}  // namespace kinemo::formats::spice
