#include "embedded/scripting_runtime/display_numbers.hpp"

#include "embedded/scripting_runtime/display.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace embedded::scripting_runtime {

namespace {

constexpr int usual_decimals = 4;
constexpr std::size_t gap = 3;
constexpr std::size_t narrowest_column = gap + 1;

/// How all numbers of a matrix are written.
struct NumberFormat {
  bool each = true;  ///< every number by itself, else with the same decimals
  int decimals = 0;
  int exponent = 0;  ///< of the power of ten that the numbers are divided by
};

std::string fixed(double value, int decimals) {
  if (!std::isfinite(value)) return number_text(value, 1);
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
  return buffer.data();
}

/// Whether a text is all of the number, but for the rounding of what was computed.
bool is_whole_truth(const std::string& text, double value, cvClassID class_id = cvDOUBLE_CLASS) {
  constexpr double single_noise = 1e-7;
  constexpr double double_noise = 1e-14;
  const double noise = class_id == cvSINGLE_CLASS ? single_noise : double_noise;
  return std::abs(std::strtod(text.c_str(), nullptr) - value) <= noise * std::abs(value);
}

/// Decimals that a number needs, when `most` are shown at most. Zeros are needed where further digits are left out.
int decimals_of(double value, int most) {
  std::string text = fixed(value, most);
  if (!is_whole_truth(text, value)) return most;
  int decimals = most;
  while (decimals > 0 && text.back() == '0') {
    text.pop_back();
    --decimals;
  }
  return decimals;
}

/// The decimals that numbers up to 10^(exponent + 1) get at most.
int allowed_decimals(int exponent) {
  if (display_limits().digits > short_digits) return display_limits().digits - 1 - exponent;
  return usual_decimals - (exponent < 0 ? exponent : std::max(0, exponent - 2));
}

/// Whether less than two digits of a number are left with so many decimals.
bool is_lost(double value, int decimals) {
  constexpr double tolerance = 0.02;
  return std::abs(std::strtod(fixed(value, decimals).c_str(), nullptr) - value) > tolerance * value;
}

NumberFormat format_for(const std::vector<double>& values) {
  constexpr int least_exponent = -3;
  constexpr int most_exponent = 4;
  double least = HUGE_VAL;
  double most = 0;
  bool whole = true;
  for (const double value : values) {
    if (!std::isfinite(value) || value == 0) continue;
    least = std::min(least, std::abs(value));
    most = std::max(most, std::abs(value));
    whole = whole && value == std::floor(value);
  }
  NumberFormat format;
  if (whole) return format;
  const int exponent = static_cast<int>(std::floor(std::log10(most)));
  const bool scaled = exponent < least_exponent || exponent > most_exponent;
  const int allowed = allowed_decimals(scaled ? 0 : exponent);
  const double scale = scaled ? std::pow(10.0, exponent) : 1;
  if (is_lost(least / scale, allowed)) return format;
  format.each = false;
  format.exponent = scaled ? exponent : 0;
  for (const double value : values) {
    if (std::isfinite(value)) format.decimals = std::max(format.decimals, decimals_of(value / scale, allowed));
  }
  return format;
}

/// The part of a page that is shown, and its texts by columns.
struct Shown {
  std::size_t rows;
  std::size_t columns;
  std::vector<std::string> cells;
  std::size_t width = 0;
  int exponent = 0;
};

Shown shown_part(const Numbers& numbers, std::size_t begin, std::size_t rows, std::size_t columns) {
  const DisplayLimits& limits = display_limits();
  Shown shown;
  shown.rows = std::min(rows, limits.lines);
  const std::size_t groups = std::max<std::size_t>(1, limits.lines / shown.rows);
  shown.columns = std::min(columns, groups * std::max<std::size_t>(1, limits.width / narrowest_column));
  std::vector<double> values;
  const auto index = [&](std::size_t row, std::size_t column) { return begin + column * rows + row; };
  for (std::size_t column = 0; column < shown.columns && !numbers.is_complex(); ++column) {
    for (std::size_t row = 0; row < shown.rows; ++row) values.push_back(numbers.re[index(row, column)]);
  }
  const NumberFormat format = format_for(values);
  const double scale = std::pow(10.0, format.exponent);
  shown.exponent = format.exponent;
  for (std::size_t column = 0; column < shown.columns; ++column) {
    for (std::size_t row = 0; row < shown.rows; ++row) {
      const std::size_t i = index(row, column);
      shown.cells.push_back(format.each ? element_text(numbers, i) : fixed(numbers.re[i] / scale, format.decimals));
      shown.width = std::max(shown.width, shown.cells.back().size());
    }
  }
  return shown;
}

std::string scale_line(int exponent) {
  std::array<char, 32> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "   1.0e%+03d *\n", exponent);
  return buffer.data();
}

/// Rows of the columns `begin` to `end`.
void append_group(const Shown& shown, std::size_t begin, std::size_t end, std::string& to) {
  for (std::size_t row = 0; row < shown.rows; ++row) {
    for (std::size_t column = begin; column < end; ++column) {
      const std::string& cell = shown.cells[column * shown.rows + row];
      to += std::string(shown.width - cell.size() + gap, ' ') + cell;
    }
    to += '\n';
  }
}

std::string more(std::size_t count, const char* noun) {
  return "   ... and " + std::to_string(count) + " more " + noun + (count == 1 ? "" : "s") + "\n";
}

std::string page_text(const Numbers& numbers, std::size_t begin, std::size_t rows, std::size_t columns) {
  const Shown shown = shown_part(numbers, begin, rows, columns);
  const std::size_t in_group = std::max<std::size_t>(1, display_limits().width / (shown.width + gap));
  const std::size_t groups = std::max<std::size_t>(1, display_limits().lines / shown.rows);
  const std::size_t last = std::min(shown.columns, groups * in_group);
  std::string result = shown.exponent != 0 ? scale_line(shown.exponent) : "";
  for (std::size_t column = 0; column < last; column += in_group) {
    const std::size_t end = std::min(column + in_group, last);
    if (in_group < columns) {
      result += end == column + 1
                    ? " Column " + std::to_string(end) + ":\n"
                    : " Columns " + std::to_string(column + 1) + " through " + std::to_string(end) + ":\n";
    }
    append_group(shown, column, end, result);
  }
  if (shown.rows < rows) result += more(rows - shown.rows, "row");
  if (last < columns) result += more(columns - last, "column");
  return result;
}

/// "(:,:,2,1) ="
std::string page_name(const Shape& shape, std::size_t page) {
  std::string result = "(:,:";
  for (std::size_t d = 2; d < shape.size(); ++d) {
    result += "," + std::to_string(page % shape[d] + 1);
    page /= shape[d];
  }
  return result + ") =\n";
}

std::string pages_text(const Numbers& numbers) {
  const std::size_t rows = numbers.shape[0];
  const std::size_t columns = numbers.shape[1];
  const std::size_t pages = numbers.size() / (rows * columns);
  const std::size_t most = std::max<std::size_t>(1, display_limits().lines / (rows + 1));
  std::string result;
  for (std::size_t page = 0; page < std::min(pages, most); ++page) {
    result += page_name(numbers.shape, page) + page_text(numbers, page * rows * columns, rows, columns);
  }
  return pages > most ? result + more(pages - most, "page") : result;
}

/// All of so many significant digits, and some of them behind the point.
std::string with_zeros(double value, int digits) {
  constexpr int least_exponent = -4;
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*e", digits - 1, value);
  const std::string text = buffer.data();
  const int exponent = std::atoi(text.c_str() + text.find('e') + 1);
  return exponent < least_exponent || exponent >= digits - 1 ? text : fixed(value, digits - 1 - exponent);
}

/// A number that is shown by itself.
std::string shown_number(double value, cvClassID class_id) {
  if (is_integer_class(class_id)) return whole_number_text(value);
  constexpr int single_digits = 8;
  const int most = class_id == cvSINGLE_CLASS ? single_digits : long_digits;
  const int digits = std::min(display_limits().digits, most);
  const std::string text = number_text(value, digits);
  if (!std::isfinite(value) || is_whole_truth(text, value, class_id)) return text;
  return with_zeros(value, digits);
}

std::string complex_text(Complex value, cvClassID class_id) {
  const std::string imaginary = shown_number(value.imag(), class_id) + "i";
  const bool signed_already = imaginary.front() == '-';
  return shown_number(value.real(), class_id) + (signed_already ? "" : "+") + imaginary;
}

}  // namespace

std::string element_text(const Numbers& numbers, std::size_t i) {
  return numbers.is_complex() ? complex_text(numbers.at(i), numbers.class_id)
                              : shown_number(numbers.re[i], numbers.class_id);
}

std::string matrix_text(const Numbers& numbers) {
  std::string result =
      numbers.is_matrix() ? page_text(numbers, 0, numbers.rows(), numbers.columns()) : pages_text(numbers);
  result.pop_back();
  return result;
}

}  // namespace embedded::scripting_runtime
