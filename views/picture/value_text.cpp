#include "views/picture/value_text.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/drawing/short_text.hpp"

#include "platform/foundation/strings.hpp"

#include <fmt/format.h>
#include <boost/optional.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;
namespace drawing = embedded::drawing;

namespace {

constexpr std::size_t longest_value = 20;

class Dialog {
 public:
  explicit Dialog(const GTBlock& block) : block_(block), names_(host::parameterNames(block)) {}

  const std::vector<std::string>& names() const { return names_; }
  bool has(const std::string& name) const { return std::find(names_.begin(), names_.end(), name) != names_.end(); }
  ustring text(const std::string& name) const { return has(name) ? host::parameter(block_, name) : ustring(); }

 private:
  const GTBlock& block_;
  std::vector<std::string> names_;
};

boost::optional<double> number_in(const std::string& text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return boost::none;
  return value;
}

/// Whether a prefix in front of the unit is one of its first factor, which has no exponent and no prefix yet.
bool takes_prefixes(const std::string& unit) {
  static const std::set<std::string> units{"Ohm", "S", "F", "H", "V", "A", "W", "Hz", "s", "N", "J", "C", "Pa", "m"};
  const std::size_t end = unit.find_first_of("*/");
  return units.count(unit.substr(0, end)) != 0;
}

/// A number in thousands: 1 to 999.9 times 1000 to that power.
struct Thousands {
  std::string digits;
  int power;
};

Thousands in_thousands(double value) {
  // Rounded first, as 999.96 is 1000 then.
  const std::string rounded = fmt::format("{:.3e}", value);
  const std::size_t mark = rounded.find('e');
  const int exponent = std::stoi(rounded.substr(mark + 1));
  const int power = static_cast<int>(std::floor(exponent / 3.0));
  const double mantissa = *number_in(rounded.substr(0, mark)) * std::pow(10.0, exponent - 3 * power);
  return {fmt::format("{:.4g}", mantissa), power};
}

constexpr std::string_view prefixes = "afpnum kMGT";
constexpr int no_prefix = 6;

/// Empty where there is no such prefix.
std::string with_prefix(double value, const std::string& unit) {
  const Thousands number = in_thousands(value);
  if (number.power < -no_prefix || number.power + no_prefix >= static_cast<int>(prefixes.size())) return {};
  const std::string prefix = number.power == 0 ? std::string() : std::string(1, prefixes[number.power + no_prefix]);
  return number.digits + " " + prefix + unit;
}

/// The same of a unit that has a prefix; empty for any other unit.
std::string with_other_prefix(double value, const std::string& unit) {
  const std::size_t at = unit.empty() ? prefixes.npos : prefixes.find(unit.front());
  if (at == prefixes.npos || !takes_prefixes(unit.substr(1))) return {};
  return with_prefix(value * std::pow(1000.0, static_cast<int>(at) - no_prefix), unit.substr(1));
}

bool is_short(const std::string& written) {
  constexpr std::size_t few = 6;
  return written.size() <= few;
}

/// A name or formula has the unit of its own.
std::string with_unit(const std::string& written, const std::string& unit) {
  const auto number = number_in(written);
  if (!number) return written == "[]" ? std::string() : written;
  const bool bare = unit.empty() || unit == "1";
  std::string text;
  if (!bare && takes_prefixes(unit)) text = with_prefix(*number, unit);
  if (text.empty() && !bare && !is_short(written)) text = with_other_prefix(*number, unit);
  if (!text.empty()) return text;
  return (is_short(written) ? written : fmt::format("{:.4g}", *number)) + (bare ? "" : " " + unit);
}

ustring number_text(const Dialog& dialog, const std::string& name) {
  const std::string value = kmf::ustring_to_utf8_string(dialog.text(name));
  const std::string unit = kmf::ustring_to_utf8_string(dialog.text(name + "_unit"));
  const ustring text = kmf::utf8_string_to_ustring(with_unit(value, unit));
  // The end of a number is its unit, and isn't cut.
  return number_in(value) ? text : drawing::shortened(text, longest_value);
}

}  // namespace

ustring value_text(const GTBlock& block) {
  if (host::isSubsystem(block) || host::isIoPort(block)) return {};
  const Dialog dialog(block);
  if (const ustring model = dialog.text("model"); !model.empty()) return drawing::shortened(model, longest_value);
  if (const ustring rest = dialog.text("text"); !rest.empty()) return drawing::shortened(rest, longest_value);
  if (dialog.has("value")) return number_text(dialog, "value");
  for (const std::string& name : dialog.names()) {
    if (dialog.has(name + "_unit")) return number_text(dialog, name);
  }
  return {};
}

}  // namespace kinemo::views::picture
