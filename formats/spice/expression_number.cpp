#include <cctype>
#include <charconv>
#include <cmath>

#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

namespace {

bool is_letter(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0;
}
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}
/// Letters of units, among them those that aren't ASCII.
bool is_unit_letter(char c) {
  return is_letter(c) || static_cast<unsigned char>(c) >= 0x80;
}
char lower(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

/// Length of the digits, fraction and exponent at the front; 0 if there are no digits.
std::size_t mantissa_length(std::string_view text) {
  std::size_t at = 0;
  std::size_t digits = 0;
  for (bool point = false; at < text.size() && (is_digit(text[at]) || (text[at] == '.' && !point)); ++at) {
    point = point || text[at] == '.';
    digits += is_digit(text[at]) ? 1 : 0;
  }
  if (digits == 0) {
    return 0;
  }
  if (at < text.size() && lower(text[at]) == 'e') {
    std::size_t exponent = at + 1;
    exponent += exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-') ? 1 : 0;
    const std::size_t first = exponent;
    while (exponent < text.size() && is_digit(text[exponent])) {
      ++exponent;
    }
    at = exponent > first ? exponent : at;
  }
  return at;
}

/// The factor of the letters that follow a number.
double scale_factor(std::string_view letters, bool in_expression) {
  if (letters.empty()) {
    return 1;
  }
  const auto begins_with = [&](std::string_view name) {
    std::size_t at = 0;
    while (at < name.size() && at < letters.size() && lower(letters[at]) == name[at]) {
      ++at;
    }
    return at == name.size();
  };
  if (begins_with("meg")) {
    return 1e6;
  }
  if (begins_with("mil") && !in_expression) {
    return 25.4e-6;
  }
  if (begins_with("\xC2\xB5") || begins_with("\xCE\xBC")) {  // the micro sign, the Greek letter
    return 1e-6;
  }
  switch (lower(letters.front())) {
    case 't':
      return 1e12;
    case 'g':
      return 1e9;
    case 'k':
      return 1e3;
    case 'm':
      return 1e-3;
    case 'u':
      return 1e-6;
    case 'n':
      return 1e-9;
    case 'p':
      return 1e-12;
    case 'f':
      return 1e-15;
    default:
      return 1;
  }
}

/// Scaling down divides by a power of ten, which is exact, so that "1u" is the number nearest to 1e-6.
double scaled(double mantissa, double factor) {
  return factor < 1 && factor != 25.4e-6 ? mantissa / std::round(1 / factor) : mantissa * factor;
}

/// Out of range is 0 or infinite, as the digits say.
double mantissa_value(std::string_view digits) {
  double value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    return digits.find("e-") != std::string_view::npos || digits.find("E-") != std::string_view::npos ? 0 : HUGE_VAL;
  }
  return value;
}

}  // namespace

std::optional<double> parse_number_prefix(std::string_view text, std::size_t& length, bool in_expression) {
  const std::size_t digits = mantissa_length(text);
  if (digits == 0) {
    return std::nullopt;
  }
  length = digits;
  while (length < text.size() && is_unit_letter(text[length])) {
    ++length;
  }
  return scaled(mantissa_value(text.substr(0, digits)),
                scale_factor(text.substr(digits, length - digits), in_expression));
}

std::optional<double> parse_number(std::string_view text) {
  double sign = 1;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    sign = text.front() == '-' ? -1 : 1;
    text.remove_prefix(1);
  }
  std::size_t length = 0;
  const auto value = parse_number_prefix(text, length, false);
  // units such as "ohm/sq" and "v^2" may stand behind; an operator may not
  const bool only_unit = length == text.size() || (length > mantissa_length(text) && text[length] != '+' &&
                                                   text[length] != '-' && text[length] != '*');
  return value && only_unit ? std::optional<double>(sign * *value) : std::nullopt;
}

std::string number_text(double value) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

}  // namespace kinemo::formats::spice
