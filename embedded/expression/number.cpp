// Numbers as text, both ways; independent of the locale.

#include "embedded/expression/parser.hpp"
#include "embedded/expression/print.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace embedded::expression {

namespace {

bool is_zero_or_dot(char c) {
  return c == '0' || c == '.';
}

/// Whether a number that no double holds is too large rather than too small.
bool is_huge(std::string_view digits) {
  const std::size_t e = std::min(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, e);
  const bool negative_exponent = e + 1 < digits.size() && digits[e + 1] == '-';
  long exponent = 0;
  for (const char c : digits.substr(std::min(e + 1, digits.size()))) {
    if (c >= '0' && c <= '9') exponent = std::min(exponent * 10 + (c - '0'), 1000000000L);
  }
  if (negative_exponent) exponent = -exponent;
  const auto first =
      static_cast<long>(std::find_if_not(mantissa.begin(), mantissa.end(), is_zero_or_dot) - mantissa.begin());
  const auto dot = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
  return exponent + dot - first > 0;
}

/// "1e+06" becomes "1e6".
std::string tidy_exponent(std::string_view text) {
  const std::size_t e = text.find('e');
  if (e == std::string_view::npos) return std::string(text);
  std::string result(text.substr(0, e + 1));
  std::size_t at = e + 1;
  if (text[at] == '-') result += '-';
  if (text[at] == '-' || text[at] == '+') ++at;
  while (at + 1 < text.size() && text[at] == '0') ++at;
  result += text.substr(at);
  return result;
}

}  // namespace

double number_from(std::string_view digits) {
  double value = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ec != std::errc::result_out_of_range) return value;
  return is_huge(digits) ? std::numeric_limits<double>::infinity() : 0.0;
}

std::string print_number(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "1e999" : "-1e999";
  std::array<char, 32> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  return tidy_exponent({buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data())});
}

}  // namespace embedded::expression
