#include "embedded/units/unit_database.hpp"

#include "platform/foundation/exception.hpp"

#include <udunits2.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace units2::core::detail {

namespace {

struct FreeUnit {
  void operator()(ut_unit* unit) const { ut_free(unit); }
};
struct FreeConverter {
  void operator()(cv_converter* converter) const { cv_free(converter); }
};
struct FreeSystem {
  void operator()(ut_system* system) const { ut_free_system(system); }
};
using UnitPtr = std::unique_ptr<ut_unit, FreeUnit>;

/// The steps of `BaseForm`, called back by the library. An offset comes with the scale, outside of the product.
struct BaseFormVisitor {
  static ut_status basic(const ut_unit* unit, void* form) { return add(unit, 1, form); }
  static ut_status product(const ut_unit* /*unit*/, int count, const ut_unit* const* units, const int* powers,
                           void* form) {
    for (int i = 0; i < count; ++i) {
      if (powers[i] != 0 && add(units[i], powers[i], form) != UT_SUCCESS) return UT_VISIT_ERROR;
    }
    return UT_SUCCESS;
  }
  static ut_status scaled(const ut_unit* /*unit*/, double scale, const ut_unit* inner, double offset, void* form) {
    auto& base = *static_cast<BaseForm*>(form);
    base.scale *= scale;
    if (offset != 0) base.offset += base.scale * offset;
    return ut_accept_visitor(inner, &callbacks, form);
  }
  static ut_status point_in_time(const ut_unit*, const ut_unit*, double, void*) { return UT_VISIT_ERROR; }
  static ut_status logarithm(const ut_unit*, double, const ut_unit*, void*) { return UT_VISIT_ERROR; }

  static const ut_visitor callbacks;

 private:
  static ut_status add(const ut_unit* unit, int exponent, void* form) {
    const char* symbol = ut_get_symbol(unit, UT_ASCII);
    if (symbol == nullptr) symbol = ut_get_name(unit, UT_ASCII);
    if (symbol == nullptr) return UT_VISIT_ERROR;
    static_cast<BaseForm*>(form)->factors.emplace_back(symbol, exponent);
    return UT_SUCCESS;
  }
};

const ut_visitor BaseFormVisitor::callbacks = {basic, product, scaled, point_in_time, logarithm};

class Unit final : public DatabaseUnit {
 public:
  explicit Unit(UnitPtr handle) : unit(std::move(handle)) {}
  bool commensurable(const DatabaseUnit& other) const override {
    // The library also converts s to Hz, by reciprocals; these aren't units of one dimension.
    ut_unit* const its_unit = static_cast<const Unit&>(other).unit.get();
    if (ut_are_convertible(unit.get(), its_unit) == 0) return false;
    const UnitPtr ratio(ut_divide(unit.get(), its_unit));  // there is none for logarithmic units
    return !ratio || ut_is_dimensionless(ratio.get()) != 0;
  }
  boost::optional<BaseForm> base_form() const override {
    BaseForm form;
    if (ut_accept_visitor(unit.get(), &BaseFormVisitor::callbacks, &form) != UT_SUCCESS) return boost::none;
    return form;
  }
  UnitPtr unit;
};

class Converter final : public UnitConverter {
 public:
  explicit Converter(cv_converter* converter) : converter_(converter) {}
  double operator()(double value) const override { return cv_convert_double(converter_.get(), value); }

 private:
  std::unique_ptr<cv_converter, FreeConverter> converter_;
};

/// Conversion by a factor that is a short decimal number, or whose reciprocal is one. Factors are quotients of rounded
/// numbers in the library, so that 2 uF would be 1999.9999999999998 nF.
class DecimalConverter final : public UnitConverter {
 public:
  DecimalConverter(double factor, double divisor) : factor_(factor), divisor_(divisor) {}
  double operator()(double value) const override { return value * factor_ / divisor_; }

 private:
  double factor_;
  double divisor_;
};

/// The decimal number of few digits that differs from `number` by rounding alone; 0 when there is none.
double short_decimal(double number) {
  constexpr int digits = 10;
  constexpr double rounding = 1e-15;
  char text[32];
  std::snprintf(text, sizeof text, "%.*g", digits, number);
  const double decimal = std::strtod(text, nullptr);
  return std::abs(decimal - number) <= rounding * std::abs(number) ? decimal : 0;
}

/// Null when the conversion isn't one by such a factor.
std::unique_ptr<const UnitConverter> decimal_converter(const UnitConverter& convert) {
  const double factor = convert(1);
  if (convert(0) != 0 || convert(-1) != -factor || !std::isnormal(factor)) return nullptr;
  const double multiple = std::abs(factor) < 1 ? 0 : short_decimal(factor);
  if (multiple != 0) return std::make_unique<DecimalConverter>(multiple, 1);
  const double divisor = short_decimal(1 / factor);
  if (divisor != 0) return std::make_unique<DecimalConverter>(1, divisor);
  return nullptr;
}

/// A spelling that the library lacks, or that it reads as a prefix with some other unit: "mph" as milliphot.
struct Spelling {
  const char* symbol;
  const char* meaning;
};

constexpr Spelling spellings[] = {
    {"deg", "degree"},
    {"rev", "cycle"},
    {"Ohm", "ohm"},
    {"mph", "mile/hour"},
    {"fps", "foot/second"},
    {"nmi", "nautical_mile"},
    {"lbm", "pound"},
    {"lpm", "liter/minute"},
    {"gpm", "3.785411784 liter/minute"},  // gallons of the United States
    {"Nm", "newton meter"},
    {"Wh", "watt hour"},
    {"Ah", "ampere hour"},
    {"var", "watt"},
    {"VAR", "watt"},
    {"P", "poise"},
};

/// The database, in which symbols take prefixes: with "Wh" there is "kWh".
std::unique_ptr<ut_system, FreeSystem> read_database() {
  ut_set_error_message_handler(ut_ignore);
  std::unique_ptr<ut_system, FreeSystem> system(ut_read_xml(nullptr));
  if (!system) kmf::throw_message("kinemo:units:core", "NoUnitDatabase");
  for (const Spelling& spelling : spellings) {
    const UnitPtr unit(ut_parse(system.get(), spelling.meaning, UT_UTF8));
    if (unit) ut_map_symbol_to_unit(spelling.symbol, UT_ASCII, unit.get());  // one that is there already stays
  }
  return system;
}

}  // namespace

std::unique_ptr<const DatabaseUnit> find_unit(const std::string& text) {
  static const std::unique_ptr<ut_system, FreeSystem> system = read_database();
  UnitPtr unit(ut_parse(system.get(), text.c_str(), UT_UTF8));
  if (!unit) return nullptr;
  return std::make_unique<Unit>(std::move(unit));
}

std::unique_ptr<const UnitConverter> find_converter(const DatabaseUnit& from, const DatabaseUnit& to) {
  if (!from.commensurable(to)) return nullptr;
  cv_converter* converter =
      ut_get_converter(static_cast<const Unit&>(from).unit.get(), static_cast<const Unit&>(to).unit.get());
  if (converter == nullptr) return nullptr;
  auto result = std::make_unique<Converter>(converter);
  if (auto decimal = decimal_converter(*result)) return decimal;
  return result;
}

}  // namespace units2::core::detail
