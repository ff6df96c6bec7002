// Parsed units by number, with their texts, and the conversions between them.

#include "platform/units/units.hpp"

#include "embedded/units/context.hpp"
#include "embedded/units/unit_table.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <cctype>
#include <deque>
#include <map>
#include <unordered_map>
#include <utility>

namespace units2::core {

namespace {

constexpr const char* group = "kinemo:units:core";
constexpr const char* dimensionless = "1";

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  if (begin == std::string::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

/// Whether the text holds an exponent with a fraction, which the database reads as an exponent and a factor.
bool has_fractional_exponent(const std::string& text) {
  for (std::size_t at = text.find('^'); at != std::string::npos; at = text.find('^', at + 1)) {
    const std::size_t end = text.find_first_not_of("+-0123456789 ", at + 1);
    const bool fraction = end != std::string::npos && end + 1 < text.size() && text[end] == '.';
    if (fraction && std::isdigit(static_cast<unsigned char>(text[end + 1])) != 0) return true;
  }
  return false;
}

bool is_readable(const std::string& text) {
  const auto control = [](unsigned char c) { return std::iscntrl(c) != 0; };
  return text.size() <= detail::longest_text && std::none_of(text.begin(), text.end(), control) &&
         !has_fractional_exponent(text);
}

/// All units that were parsed so far. Number 0 is the empty unit; it converts as the dimensionless one.
class UnitTable {
 public:
  static UnitTable& get() {
    static UnitTable& table = *new UnitTable;  // outlives every static value with a unit
    return table;
  }

  std::size_t parse(const std::string& text) {
    const auto known = numbers_.find(text);
    if (known != numbers_.end()) return known->second;
    const std::string unit = trimmed(text);
    if (unit != text) return parse(unit);
    if (!is_readable(text)) fail(text);
    auto found = detail::find_unit(text);
    if (!found) fail(text);
    rows_.push_back({text, std::move(found)});
    return numbers_.emplace(text, rows_.size() - 1).first->second;
  }

  const std::string& text(std::size_t unit) const { return rows_[unit].text; }

  /// Null when the units aren't commensurable.
  const detail::UnitConverter* converter(std::size_t from, std::size_t to) {
    const auto pair = std::make_pair(from, to);
    if (pair == last_pair_) return last_converter_;  // arrays are converted one number at a time
    auto found = converters_.find(pair);
    if (found == converters_.end()) found = converters_.emplace(pair, find_converter(from, to)).first;
    last_pair_ = pair;
    return last_converter_ = found->second.get();
  }

  const detail::DatabaseUnit& unit(std::size_t number) {
    return *rows_[number == 0 ? parse(dimensionless) : number].unit;
  }

 private:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  struct Row {
    std::string text;
    std::unique_ptr<const detail::DatabaseUnit> unit;
  };

  std::unique_ptr<const detail::UnitConverter> find_converter(std::size_t from, std::size_t to) {
    return detail::find_converter(unit(from), unit(to));
  }

  UnitTable() {
    rows_.push_back({});
    numbers_.emplace("", 0);
  }

  [[noreturn]] static void fail(const std::string& text) { kmf::throw_message(group, "InvalidUnit", text); }

  std::deque<Row> rows_;
  std::unordered_map<std::string, std::size_t> numbers_;
  std::map<std::pair<std::size_t, std::size_t>, std::unique_ptr<const detail::UnitConverter>> converters_;
  std::pair<std::size_t, std::size_t> last_pair_{none, none};
  const detail::UnitConverter* last_converter_ = nullptr;
};

}  // namespace

const detail::DatabaseUnit& detail::database_unit(const AbstractExpr& unit) {
  return UnitTable::get().unit(unit.id());
}

AbstractExpr parse(const std::string& text) {
  return AbstractExpr(UnitTable::get().parse(text));
}

ExprString::ExprString(const AbstractExpr& unit) : unit_(unit) {}

const std::string& ExprString::text() const {
  return UnitTable::get().text(unit_.id());
}

bool commensurable(const AbstractExpr& from, const AbstractExpr& to) {
  return from == to || UnitTable::get().converter(from.id(), to.id()) != nullptr;
}

double convert(double value, const AbstractExpr& from, const AbstractExpr& to) {
  if (from == to) return value;
  const detail::UnitConverter* converter = UnitTable::get().converter(from.id(), to.id());
  if (converter == nullptr) {
    kmf::throw_message(group, "IncommensurableUnits", ExprString(from).text(), ExprString(to).text());
  }
  return (*converter)(value);
}

bool is_dimensionless(const AbstractExpr& unit) {
  return unit.id() == 0 || commensurable(unit, {});
}

}  // namespace units2::core

namespace unit_manager {

units2::core::AbstractExpr Context::parse(const std::string& text) const {
  return units2::core::parse(text);
}

const Context& get_cv_context() {
  static const Context context;
  return context;
}

}  // namespace unit_manager
