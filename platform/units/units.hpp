#pragma once

// Unit texts, conversions, commensurability.
//
// Glossary
//   unit          what a text such as "kOhm", "m/s^2" or "degC" stands for
//   "1"           the dimensionless unit; the empty text is no unit at all
//   commensurable two units of one dimension: a value in one can be told in the other
//   offset unit   one whose zero isn't the zero of the quantity: degC, degF, points in time, logarithmic units
//   made unit     a product, quotient or power of units
// An implementation provides all operations below.

#include "platform/foundation/export.hpp"

#include <boost/optional.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <string>

namespace units2::core {

/// A parsed unit: a small number that is the same for equal texts; 0 is the empty unit.
class KINEMO_PLATFORM_API AbstractExpr {
 public:
  AbstractExpr() = default;
  std::size_t id() const { return id_; }
  friend bool operator==(const AbstractExpr& a, const AbstractExpr& b) { return a.id_ == b.id_; }

 private:
  friend KINEMO_PLATFORM_API AbstractExpr parse(const std::string& text);
  explicit AbstractExpr(std::size_t id) : id_(id) {}
  std::size_t id_ = 0;
};

/// @throws kmf::MessageException "kinemo:units:core" "InvalidUnit" (text)
KINEMO_PLATFORM_API AbstractExpr parse(const std::string& text);

/// A unit with its text, as it is written into expressions and values.
class KINEMO_PLATFORM_API ExprString {
 public:
  ExprString() = default;
  ExprString(const AbstractExpr& unit);
  const std::string& text() const;
  const AbstractExpr& unit() const { return unit_; }
  friend bool operator==(const ExprString& a, const ExprString& b) { return a.unit_ == b.unit_; }

 private:
  AbstractExpr unit_;
};

KINEMO_PLATFORM_API bool commensurable(const AbstractExpr& from, const AbstractExpr& to);
/// Offset units (degC) convert with their offset.
/// @throws "kinemo:units:core" "IncommensurableUnits" (from, to)
KINEMO_PLATFORM_API double convert(double value, const AbstractExpr& from, const AbstractExpr& to);
/// Whether values in the unit are plain ratios or angles: commensurable with "1". The empty unit is.
KINEMO_PLATFORM_API bool is_dimensionless(const AbstractExpr& unit);

// Made units. The text is composed from the texts, factors of equal text joined: kOhm*F, m/s, kOhm^2, (kOhm*F)^2. It
// parses back to the same unit, so equal texts are one unit here, too; what cancels altogether is "1". The empty unit
// is a factor of 1.
//
// An offset unit is no factor: 25 degC may mean 298.15 K or a rise by 25 K, and either guess is a wrong number for
// somebody. (Within a written text such as degC/W it is a difference, as everywhere in engineering.)

/// @throws "kinemo:units:core" "OffsetUnitInProduct" (unit), "UnitTooLarge" (text): an exponent above 255, or 256
/// characters of text
KINEMO_PLATFORM_API AbstractExpr product(const AbstractExpr& a, const AbstractExpr& b);
/// @throws as `product`
KINEMO_PLATFORM_API AbstractExpr quotient(const AbstractExpr& a, const AbstractExpr& b);
/// The unit to the power of numerator/denominator; the denominator is positive.
/// @throws as `product`, and "NoSuchPower" (unit, exponent) where `has_power` is false
KINEMO_PLATFORM_API AbstractExpr power(const AbstractExpr& unit, int numerator, int denominator = 1);
/// Whether the power has whole exponents. kOhm*Ohm has no square root, though its base unit has one.
KINEMO_PLATFORM_API bool has_power(const AbstractExpr& unit, int numerator, int denominator);
/// The unit of the same dimension without a factor: kg*m^2/s^3 for kW, K for degC, "1" for the dimensionless ones that
/// are no angles.
/// @throws "OffsetUnitInProduct" (unit) for logarithmic units and points in time
KINEMO_PLATFORM_API AbstractExpr base_unit(const AbstractExpr& unit);

KINEMO_PLATFORM_API bool has_offset(const AbstractExpr& unit);
/// The unit in which two values in `unit` differ: K for degC, degR for degF, the unit itself where it has no offset.
/// @throws "OffsetUnitInProduct" (unit) for logarithmic units and points in time
KINEMO_PLATFORM_API AbstractExpr difference_unit(const AbstractExpr& unit);

}  // namespace units2::core

/// The unit context that the scripting layer converts arrays with.
namespace unit_manager {
struct Context;
KINEMO_PLATFORM_API const Context& get_cv_context();
}  // namespace unit_manager
