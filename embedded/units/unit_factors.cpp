#include "embedded/units/unit_factors.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <numeric>
#include <string_view>

namespace units2::core::detail {

namespace {

bool is_digit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

/// Micro sign, mu, Omega, ohm sign, degree sign. Other characters beyond ASCII, such as raised digits, mean more than a
/// letter.
constexpr std::string_view letters[] = {"\u00b5", "\u03bc", "\u03a9", "\u2126", "\u00b0"};

/// Length of the letter at the beginning of the text in UTF-8; 0 where there is none.
std::size_t letter_length(std::string_view text) {
  if (text.empty()) return 0;
  const auto first = static_cast<unsigned char>(text.front());
  if (std::isalpha(first) != 0 || first == '_' || first == '%') return 1;
  for (const std::string_view letter : letters) {
    if (text.substr(0, letter.size()) == letter) return letter.size();
  }
  return 0;
}

/// Reads products of powers of symbols; the result is told by `ok`, which is cleared at the first thing that is
/// something else.
class FactorReader {
 public:
  explicit FactorReader(std::string_view text) : rest_(text) {}

  Factors read_product() {
    Factors result = read_power();
    for (skip_blanks(); ok && !rest_.empty() && rest_.front() != ')'; skip_blanks()) {
      const int sign = take('/') ? -1 : 1;
      if (sign > 0 && !take('*')) take('.');
      for (const auto& [symbol, exponent] : read_power()) multiply(result, symbol, sign * exponent);
    }
    return result;
  }

  bool at_end() const { return rest_.empty(); }
  bool ok = true;

 private:
  Factors read_power() {
    skip_blanks();
    Factors result;
    if (!rest_.empty() && rest_.front() == '(') {
      result = read_brackets();
    } else if (!take_one()) {
      result.emplace_back(read_symbol(), 1);
    }
    const int exponent = read_exponent();
    for (auto& factor : result) factor.second *= exponent;
    return exponent == 0 ? Factors() : result;
  }

  /// What the brackets hold, or they as one factor when they hold something else than a product.
  Factors read_brackets() {
    std::size_t end = 0;
    int open = 0;
    do {
      if (rest_[end] == '(') ++open;
      if (rest_[end] == ')') --open;
    } while (++end < rest_.size() && open > 0);
    ok = ok && open == 0;
    const std::string_view whole = rest_.substr(0, end);
    rest_.remove_prefix(end);
    if (!ok) return {};
    FactorReader inside(whole.substr(1, whole.size() - 2));
    Factors result = inside.read_product();
    if (inside.ok && inside.at_end()) return result;
    return {{std::string(whole), 1}};
  }

  std::string read_symbol() {
    std::size_t end = 0;
    while (const std::size_t length = letter_length(rest_.substr(end))) end += length;
    if (end == 0) ok = false;
    std::string symbol(rest_.substr(0, end));
    rest_.remove_prefix(end);
    return symbol;
  }

  int read_exponent() {
    const bool raised = take('^');
    const bool negative = take('-');
    if (!negative && raised) take('+');
    std::size_t end = 0;
    while (end < rest_.size() && is_digit(rest_[end])) ++end;
    if (end == 0) {
      ok = ok && !raised && !negative;
      return 1;
    }
    constexpr std::size_t most_digits = 3;
    if (end > most_digits) ok = false;
    const int number = ok ? std::atoi(std::string(rest_.substr(0, end)).c_str()) : 1;
    rest_.remove_prefix(end);
    return negative ? -number : number;
  }

  /// The number 1 alone, as in "1/s"; other numbers aren't factors.
  bool take_one() {
    const bool alone = rest_.size() < 2 || std::string_view(" */)").find(rest_[1]) != std::string_view::npos;
    return alone && take('1');
  }

  bool take(char c) {
    if (rest_.empty() || rest_.front() != c) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void skip_blanks() {
    while (take(' ')) {
    }
  }

  std::string_view rest_;
};

/// Whether the database reads both texts as the same multiple of one unit.
bool same_unit(const std::string& a, const std::string& b) {
  if (a == b) return true;
  const auto first = find_unit(a);
  const auto second = find_unit(b);
  const auto converter = first && second ? find_converter(*first, *second) : nullptr;
  constexpr double rounding = 1e-12;
  return converter && (*converter)(0) == 0 && std::abs((*converter)(1) - 1) < rounding;
}

std::string power_text(const std::string& base, int exponent) {
  return exponent == 1 ? base : base + '^' + std::to_string(exponent);
}

/// The factors whose exponents have the sign, without it, divided by `divisor`; empty when there is none.
std::string product_text(const Factors& factors, int sign, int divisor) {
  std::string text;
  for (const auto& [symbol, exponent] : factors) {
    if (exponent * sign > 0) text += (text.empty() ? "" : "*") + power_text(symbol, exponent * sign / divisor);
  }
  return text;
}

std::string fraction_text(const Factors& factors, int divisor) {
  const std::string above = product_text(factors, 1, divisor);
  const std::string below = product_text(factors, -1, divisor);
  if (below.empty()) return above.empty() ? "1" : above;
  const bool brackets = below.find('*') != std::string::npos;
  return (above.empty() ? "1" : above) + '/' + (brackets ? '(' + below + ')' : below);
}

}  // namespace

Factors factors_of(const std::string& text) {
  FactorReader reader(text);
  const Factors factors = reader.read_product();
  if (reader.ok && reader.at_end() && same_unit(text_of(factors), text)) return factors;
  return {{'(' + text + ')', 1}};
}

void multiply(Factors& factors, const std::string& factor, int exponent) {
  const auto known = std::find_if(factors.begin(), factors.end(), [&](const auto& f) { return f.first == factor; });
  if (known == factors.end()) {
    factors.emplace_back(factor, exponent);
  } else if ((known->second += exponent) == 0) {
    factors.erase(known);
  }
}

std::string text_of(const Factors& factors) {
  int common = 0;
  for (const auto& factor : factors) common = std::gcd(common, factor.second);
  if (common <= 1 || factors.size() == 1) return fraction_text(factors, 1);
  if (product_text(factors, 1, 1).empty())
    return "1/" + power_text('(' + product_text(factors, -1, common) + ')', common);
  return power_text('(' + fraction_text(factors, common) + ')', common);
}

}  // namespace units2::core::detail
