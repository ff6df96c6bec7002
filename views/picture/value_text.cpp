#include "views/picture/value_text.hpp"

#include "embedded/block_diagram/diagram.hpp"

#include "platform/foundation/strings.hpp"

#include <fmt/format.h>
#include <boost/optional.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;

namespace {

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

bool takes_prefixes(const std::string& unit) {
  static const std::set<std::string> units{"Ohm", "S", "F", "H", "V", "A", "W", "Hz", "s", "N", "J"};
  return units.count(unit) != 0;
}

/// With the prefix that leaves one to three digits in front of the point; empty where that wouldn't be the number.
std::string with_prefix(double value, const std::string& unit) {
  constexpr const char* prefixes[] = {"f", "p", "n", "u", "m", "", "k", "M", "G"};
  constexpr int none = 5;
  const int thousands = value == 0 ? 0 : static_cast<int>(std::floor(std::log10(std::abs(value)) / 3 + 1e-9));
  if (thousands < -none || thousands + none >= static_cast<int>(std::size(prefixes))) return {};
  const std::string digits = fmt::format("{:.6g}", value / std::pow(1000.0, thousands));
  const double told = *number_in(digits) * std::pow(1000.0, thousands);
  if (std::abs(told - value) > 1e-12 * std::abs(value)) return {};
  return digits + " " + prefixes[thousands + none] + unit;
}

/// A name or formula has the unit of its own.
std::string with_unit(const std::string& value, const std::string& unit) {
  const auto number = number_in(value);
  if (!number || unit.empty() || unit == "1") return value == "[]" ? std::string() : value;
  const std::string prefixed = takes_prefixes(unit) ? with_prefix(*number, unit) : std::string();
  return prefixed.empty() ? value + " " + unit : prefixed;
}

ustring number_text(const Dialog& dialog, const std::string& name) {
  const std::string value = kmf::ustring_to_utf8_string(dialog.text(name));
  return kmf::utf8_string_to_ustring(with_unit(value, kmf::ustring_to_utf8_string(dialog.text(name + "_unit"))));
}

}  // namespace

ustring value_text(const GTBlock& block) {
  if (host::isSubsystem(block) || host::isIoPort(block)) return {};
  const Dialog dialog(block);
  if (const ustring model = dialog.text("model"); !model.empty()) return model;
  if (const ustring rest = dialog.text("text"); !rest.empty()) return rest;
  if (dialog.has("value")) return number_text(dialog, "value");
  for (const std::string& name : dialog.names()) {
    if (dialog.has(name + "_unit")) return number_text(dialog, name);
  }
  return {};
}

ustring shortened(const ustring& text, std::size_t length) {
  if (text.size() <= length) return text;
  std::size_t end = length - 1;
  const bool splits_a_pair = text[end - 1] >= 0xD800 && text[end - 1] < 0xDC00;
  if (splits_a_pair) --end;
  return text.substr(0, end) + u"\u2026";
}

}  // namespace kinemo::views::picture
