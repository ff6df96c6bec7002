// Products, quotients and powers of units, by the factors of their texts.

#include "embedded/units/unit_factors.hpp"
#include "embedded/units/unit_table.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <unordered_map>

namespace units2::core {

namespace {

constexpr const char* group = "kinemo:units:core";
constexpr int highest_exponent = 255;  // the database's

std::string text_of(const AbstractExpr& unit) {
  return ExprString(unit).text();
}

/// The factors of a unit's text. Within a product an offset unit is told as what its values differ in, K/W for degC/W,
/// since it must not regain its offset when the others cancel.
detail::Factors read_factors(const AbstractExpr& unit) {
  if (unit.id() == 0) return {};
  detail::Factors result;
  for (const auto& [symbol, exponent] : detail::factors_of(text_of(unit))) {
    const AbstractExpr factor = parse(symbol);
    detail::multiply(result, has_offset(factor) ? text_of(difference_unit(factor)) : symbol, exponent);
  }
  return result;
}

/// Kept for each unit that was computed with, as the table keeps each unit that was parsed.
const detail::Factors& factors_of(const AbstractExpr& unit) {
  static auto& known = *new std::unordered_map<std::size_t, detail::Factors>;
  const auto found = known.find(unit.id());
  return found != known.end() ? found->second : known.emplace(unit.id(), read_factors(unit)).first->second;
}

[[noreturn]] void refuse_offset(const AbstractExpr& unit) {
  kmf::throw_message(group, "OffsetUnitInProduct", text_of(unit));
}

bool is_too_large(const detail::Factors& factors, const std::string& text) {
  return text.size() > detail::longest_text || std::any_of(factors.begin(), factors.end(), [](const auto& factor) {
           return std::abs(factor.second) > highest_exponent;
         });
}

/// A loop that multiplies on and on ends here, before the table of units grows large.
AbstractExpr made_unit(const detail::Factors& factors) {
  const std::string text = detail::text_of(factors);
  if (is_too_large(factors, text)) kmf::throw_message(group, "UnitTooLarge", text);
  const AbstractExpr unit = parse(text);
  const auto base = detail::database_unit(unit).base_form();
  if (base && !std::isnormal(base->scale)) kmf::throw_message(group, "UnitTooLarge", text);
  return unit;
}

/// a * b^sign
AbstractExpr combined(const AbstractExpr& a, const AbstractExpr& b, int sign) {
  if (has_offset(a)) refuse_offset(a);
  if (has_offset(b)) refuse_offset(b);
  if (a.id() == 0 && b.id() == 0) return {};
  detail::Factors factors = factors_of(a);
  for (const auto& [symbol, exponent] : factors_of(b)) detail::multiply(factors, symbol, sign * exponent);
  return made_unit(factors);
}

std::string exponent_text(int numerator, int denominator) {
  return std::to_string(numerator) + (denominator == 1 ? "" : '/' + std::to_string(denominator));
}

bool is_multiple(const AbstractExpr& unit, const AbstractExpr& of, double factor) {
  constexpr double rounding = 1e-12;
  return std::abs(convert(1, unit, of) / factor - 1) < rounding;
}

/// Text of `scale` times a unit, with all digits.
std::string scaled_text(double scale, const std::string& unit) {
  char text[detail::longest_text];
  std::snprintf(text, sizeof text, "%.17g", scale);
  return text + (' ' + unit);
}

}  // namespace

AbstractExpr product(const AbstractExpr& a, const AbstractExpr& b) {
  return combined(a, b, 1);
}

AbstractExpr quotient(const AbstractExpr& a, const AbstractExpr& b) {
  return combined(a, b, -1);
}

bool has_power(const AbstractExpr& unit, int numerator, int denominator) {
  const detail::Factors& factors = factors_of(unit);
  return std::all_of(factors.begin(), factors.end(), [&](const auto& factor) {
    return static_cast<long long>(factor.second) * numerator % denominator == 0;
  });
}

AbstractExpr power(const AbstractExpr& unit, int numerator, int denominator) {
  if (has_offset(unit)) refuse_offset(unit);
  if (!has_power(unit, numerator, denominator)) {
    kmf::throw_message(group, "NoSuchPower", text_of(unit), exponent_text(numerator, denominator));
  }
  if (unit.id() == 0) return unit;
  detail::Factors result;
  for (const auto& [symbol, exponent] : factors_of(unit)) {
    const long long scaled = static_cast<long long>(exponent) * numerator / denominator;
    if (std::llabs(scaled) > highest_exponent) {
      kmf::throw_message(group, "UnitTooLarge", '(' + text_of(unit) + ")^" + exponent_text(numerator, denominator));
    }
    if (scaled != 0) result.emplace_back(symbol, static_cast<int>(scaled));
  }
  return made_unit(result);
}

AbstractExpr base_unit(const AbstractExpr& unit) {
  const auto base = detail::database_unit(unit).base_form();
  if (!base) refuse_offset(unit);
  return made_unit(base->factors);
}

bool has_offset(const AbstractExpr& unit) {
  if (unit.id() == 0) return false;
  const auto base = detail::database_unit(unit).base_form();
  return !base || base->offset != 0;
}

AbstractExpr difference_unit(const AbstractExpr& unit) {
  if (!has_offset(unit)) return unit;
  const auto base = detail::database_unit(unit).base_form();
  if (!base) refuse_offset(unit);
  const AbstractExpr coherent = made_unit(base->factors);
  if (base->scale == 1) return coherent;
  const AbstractExpr rankine = parse("degR");
  if (commensurable(rankine, unit) && is_multiple(rankine, coherent, base->scale)) return rankine;
  return parse('(' + scaled_text(base->scale, text_of(coherent)) + ')');
}

}  // namespace units2::core
