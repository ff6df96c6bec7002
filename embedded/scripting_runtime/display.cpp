#include "embedded/scripting_runtime/display.hpp"

#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>

namespace embedded::scripting_runtime {

namespace {

constexpr int display_digits = 5;

DisplaySink& sink() {
  static DisplaySink current = [](const std::string& text) { std::cout << text << '\n'; };
  return current;
}

std::string complex_text(Complex value, int digits) {
  const std::string imaginary = number_text(value.imag(), digits) + "i";
  const bool signed_already = imaginary.front() == '-';
  return number_text(value.real(), digits) + (signed_already ? "" : "+") + imaginary;
}

std::string element_text(const Numbers& numbers, std::size_t i) {
  return numbers.is_complex() ? complex_text(numbers.at(i), display_digits)
                              : number_text(numbers.re[i], display_digits);
}

std::string matrix_text(const Numbers& numbers) {
  std::size_t width = 0;
  std::vector<std::string> cells;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    cells.push_back(element_text(numbers, i));
    width = std::max(width, cells.back().size());
  }
  std::string result;
  const std::size_t rows = numbers.rows();
  for (std::size_t row = 0; row < rows; ++row) {
    if (row > 0) result += '\n';
    for (std::size_t i = row; i < cells.size(); i += rows) {
      result += std::string(width - cells[i].size() + 3, ' ') + cells[i];
    }
  }
  return result;
}

/// "1 kOhm"; the unit of several rows stands below them.
std::string quantity_display(const Quantity& quantity) {
  const std::string numbers = display_text(quantity.numbers.array());
  if (!quantity.has_unit()) return numbers;
  return numbers + (numbers.find('\n') == std::string::npos ? " " : "\n   ") + unit_text(quantity.unit);
}

std::string described(const cvArray_tag* array) {
  return "[" + shape_text(cvGetDimensions(array)) + " " + cvGetClassName(array) + "]";
}

std::string structure_text(const cvArray_tag* array) {
  if (cvGetNumberOfElements(array) != 1) return described(array);
  std::string result;
  for (const std::string& field : cvGetFieldNames(array)) {
    const cvArray_tag* value = cvGetField(array, 0, field.c_str());
    const bool small = checked_count(shape_of(value)) == 1 || (cvIsChar(value) && cvGetDimensions(value)[0] <= 1);
    if (!result.empty()) result += '\n';
    result += "    " + field + ": " + (small && !cvIsStruct(value) ? display_text(value) : described(value));
  }
  return result;
}

std::string cell_text(const cvArray_tag* array) {
  std::string result = "{";
  const std::size_t rows = cvGetDimensions(array)[0];
  const std::size_t count = cvGetNumberOfElements(array);
  for (std::size_t row = 0; row < rows; ++row) {
    if (row > 0) result += "; ";
    for (std::size_t i = row; i < count; i += rows) {
      if (i > row) result += ", ";
      const cvArray_tag* value = cvGetCell(array, i);
      const bool text = cvIsChar(value) && cvGetDimensions(value)[0] <= 1;
      const bool number = cvIsNumeric(value) || cvIsLogical(value) || is_value_object(value);
      const bool small = number && checked_count(shape_of(value)) == 1;
      result += text ? "'" + kmf::cvarray_to_string(value) + "'" : small ? display_text(value) : described(value);
    }
  }
  return result + "}";
}

}  // namespace

std::string number_text(double value, int digits) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Inf" : "-Inf";
  const double whole_limit = 1e15;
  if (value == std::floor(value) && std::abs(value) < whole_limit) digits = 16;
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*g", digits, value);
  return buffer.data();
}

std::string display_text(const cvArray_tag* array) {
  switch (cvGetClassID(array)) {
    case cvCELL_CLASS:
      return cell_text(array);
    case cvSTRUCT_CLASS:
      return structure_text(array);
    case cvFUNCTION_CLASS:
      return cvGetFunctionText(array);
    case cvOBJECT_CLASS:
      if (is_value_object(array)) return quantity_display(quantity_of(array));
      return class_dispatch().display_text(array).value_or(described(array));
    case cvCHAR_CLASS:
      if (cvGetDimensions(array)[0] <= 1) return kmf::cvarray_to_string(array);
      return described(array);
    default:
      break;
  }
  const Numbers numbers = numbers_of(array);
  if (numbers.size() == 0 || !numbers.is_matrix()) return described(array);
  return numbers.is_scalar() ? element_text(numbers, 0) : matrix_text(numbers);
}

void set_display_sink(DisplaySink its_sink) {
  sink() = its_sink;
}

void display(const std::string& text) {
  sink()(text);
}

}  // namespace embedded::scripting_runtime
