#pragma once

// The one database of units of the process: what UDUNITS-2 knows, and the spellings of electrical and mechanical
// engineering that it lacks. It is read when the first unit is asked for and lives as long as the process. This is the
// only room that sees the C library.

#include <boost/optional.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace units2::core::detail {

/// Symbols with their exponents, none of them 0.
using Factors = std::vector<std::pair<std::string, int>>;

/// A unit as a multiple of base units: value in base units = scale * value + offset.
struct BaseForm {
  Factors factors;
  double scale = 1;
  double offset = 0;
};

/// A unit of the database. Owned by the table of parsed units, never copied.
class DatabaseUnit {
 public:
  virtual ~DatabaseUnit() = default;
  virtual bool commensurable(const DatabaseUnit& other) const = 0;
  /// None for logarithmic units and points in time.
  virtual boost::optional<BaseForm> base_form() const = 0;
};

/// Turns numbers from one unit into another.
class UnitConverter {
 public:
  virtual ~UnitConverter() = default;
  virtual double operator()(double value) const = 0;
};

/// The unit of a text in UTF-8; null when the text isn't one.
/// @throws kmf::MessageException "kinemo:units:core" "NoUnitDatabase" when the library's database can't be read
std::unique_ptr<const DatabaseUnit> find_unit(const std::string& text);

/// Null when the units aren't commensurable.
std::unique_ptr<const UnitConverter> find_converter(const DatabaseUnit& from, const DatabaseUnit& to);

}  // namespace units2::core::detail
