#pragma once

// Unit texts, conversions, commensurability.
//
// Glossary
//   unit          what a text such as "kOhm", "m/s^2" or "degC" stands for
//   "1"           the dimensionless unit; the empty text is no unit at all
//   commensurable two units of one dimension: a value in one can be told in the other
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

}  // namespace units2::core

/// The unit context that the scripting layer converts arrays with.
namespace unit_manager {
struct Context;
KINEMO_PLATFORM_API const Context& get_cv_context();
}  // namespace unit_manager
