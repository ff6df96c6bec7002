#include "embedded/scripting_runtime/display.hpp"

#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/display_numbers.hpp"
#include "embedded/scripting_runtime/display_structures.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iostream>

namespace embedded::scripting_runtime {

namespace {

constexpr std::size_t most_inline_elements = 16;
constexpr std::size_t indent_width = 4;

DisplaySink& sink() {
  static DisplaySink current = [](const std::string& text) { std::cout << text; };
  return current;
}

DisplaySink& error_sink() {
  static DisplaySink current = [](const std::string& text) { std::cerr << text; };
  return current;
}

bool is_text(const cvArray_tag* array) {
  return cvIsChar(array) && cvGetDimensions(array)[0] <= 1;
}

std::string quoted(const std::string& text) {
  return expression::print_text(expression::without_controls(text, "\n\t"));
}

/// A text of one row on one line with its line ends as "\n", cut to so many characters.
std::string quoted_start(const cvArray_tag* text, std::size_t most) {
  constexpr char16_t first_of_low_halves = 0xDC00;
  constexpr char16_t last_of_low_halves = 0xDFFF;
  const ustring& characters = cvGetCharacters(text);
  std::size_t length = std::min(characters.size(), most);
  const bool halved = length < characters.size() && characters[length] >= first_of_low_halves &&
                      characters[length] <= last_of_low_halves;
  if (halved && length > 0) --length;
  std::string result;
  for (const char c : quoted(kmf::ustring_to_utf8_string(characters.substr(0, length)))) {
    result += c == '\n' ? "\\n" : std::string(1, c);
  }
  if (length < characters.size()) result.insert(result.size() - 1, "...");
  return result;
}

/// "[](1x0)", with the class where it isn't double.
std::string empty_text(const cvArray_tag* array) {
  const std::string shape = shape_text(cvGetDimensions(array));
  if (cvIsChar(array)) return shape == "0x0" ? "''" : "''(" + shape + ")";
  if (cvIsCell(array)) return "{}(" + shape + ")";
  const bool plain = cvGetClassID(array) == cvDOUBLE_CLASS;
  return "[](" + shape + (plain ? ")" : " " + cvGetClassName(array) + ")");
}

// --- values on one line

/// Elements by rows, in brackets; empty where it gets longer than `width`.
template <class ElementText>
std::string listed(const cvArray_tag* array, std::size_t width, const char* separator, ElementText element) {
  std::string result;
  const std::size_t rows = cvGetDimensions(array)[0];
  const std::size_t count = cvGetNumberOfElements(array);
  for (std::size_t row = 0; row < rows; ++row) {
    if (row > 0) result += "; ";
    for (std::size_t i = row; i < count; i += rows) {
      result += (i > row ? separator : "") + element(i);
      if (result.size() > width) return {};
    }
  }
  return result;
}

std::string inline_numbers(const cvArray_tag* array, std::size_t width) {
  const Numbers numbers = numbers_of(array);
  if (numbers.is_scalar()) return element_text(numbers, 0);
  const std::string elements = listed(array, width, " ", [&](std::size_t i) { return element_text(numbers, i); });
  return elements.empty() ? "" : "[" + elements + "]";
}

std::string inline_cell(const cvArray_tag* array, std::size_t width) {
  constexpr std::size_t share = 2;  // what an element may take of the line; texts more where the line is long enough
  constexpr std::size_t least = 8;  // so that cells in cells in cells come to an end
  if (width < least) return {};
  for (const std::size_t for_texts : {width, width / share}) {
    const std::string elements = listed(array, width, ", ", [&](std::size_t i) {
      const cvArray_tag* element = cvGetCell(array, i);
      return inline_text(element, is_text(element) ? for_texts : width / share);
    });
    if (!elements.empty()) return "{" + elements + "}";
  }
  return {};
}

/// A text that is too long is cut where there is room enough to recognise it.
std::string inline_characters(const cvArray_tag* text, std::size_t width) {
  constexpr std::size_t least = 16;
  constexpr std::size_t quotes_and_dots = 5;
  const std::string whole = quoted_start(text, width);
  if (cvGetNumberOfElements(text) <= width && whole.size() <= width) return whole;
  return width < least ? "" : quoted_start(text, width - quotes_and_dots);
}

std::string inline_value(const cvArray_tag* array, std::size_t width) {
  if (is_value_object(array)) {
    const Quantity quantity = quantity_of(array);
    const std::string numbers = inline_text(quantity.numbers.array(), width);
    return quantity.has_unit() ? numbers + " " + unit_text(quantity.unit) : numbers;
  }
  if (cvGetClassID(array) == cvFUNCTION_CLASS) return cvGetFunctionText(array);
  if (cvGetClassID(array) == cvOBJECT_CLASS || cvIsStruct(array)) return {};
  if (cvGetNumberOfElements(array) == 0) {
    if (cvGetDimensions(array) != Shape{0, 0}) return empty_text(array);
    return cvIsChar(array) ? "''" : cvIsCell(array) ? "{}" : "[]";
  }
  if (is_text(array)) return inline_characters(array, width);
  const bool small = cvGetNumberOfElements(array) <= most_inline_elements && cvGetDimensions(array).size() == 2;
  if (!small || cvIsChar(array)) return {};
  return cvIsCell(array) ? inline_cell(array, width) : inline_numbers(array, width);
}

// --- values on several lines

/// "1 kOhm"; the unit of several rows stands below them.
std::string quantity_display(const Quantity& quantity) {
  const std::string numbers = display_text(quantity.numbers.array());
  if (!quantity.has_unit()) return numbers;
  return numbers + (numbers.find('\n') == std::string::npos ? " " : "\n   ") + unit_text(quantity.unit);
}

/// "    {2,1}: 'abc'" for each element.
std::string cell_lines(const cvArray_tag* array) {
  const Shape& shape = cvGetDimensions(array);
  const std::size_t count = cvGetNumberOfElements(array);
  const std::size_t shown = std::min(count, display_limits().lines);
  std::string result;
  for (std::size_t i = 0; i < shown; ++i) {
    std::string place;
    std::size_t rest = i;
    for (const std::size_t size : shape) {
      place += (place.empty() ? "" : ",") + std::to_string(rest % size + 1);
      rest /= size;
    }
    const std::string head = "    {" + place + "}: ";
    const std::size_t width = display_limits().width;
    result += (i > 0 ? "\n" : "") + head +
              text_beside(cvGetCell(array, i), width > head.size() ? width - head.size() : indent_width);
  }
  if (shown < count)
    result +=
        "\n    ... and " + std::to_string(count - shown) + (count - shown == 1 ? " more element" : " more elements");
  return result;
}

/// Whether an element is a text that would be cut on a line with others.
bool has_long_text(const cvArray_tag* cell) {
  constexpr std::size_t long_text = 34;
  for (std::size_t i = 0; i < std::min(cvGetNumberOfElements(cell), most_inline_elements); ++i) {
    const cvArray_tag* element = cvGetCell(cell, i);
    if (is_text(element) && cvGetNumberOfElements(element) > long_text) return true;
  }
  return false;
}

std::string cell_text(const cvArray_tag* array) {
  if (cvGetDimensions(array).size() == 2 && !has_long_text(array)) {
    const std::string on_one_line = inline_cell(array, display_limits().width - indent_width * 2);
    if (!on_one_line.empty()) return on_one_line;
  }
  return cell_lines(array);
}

std::string object_text(const cvArray_tag* array) {
  if (is_value_object(array)) return quantity_display(quantity_of(array));
  if (const auto shown = class_dispatch().display_text(array)) return *shown;
  const std::vector<std::string> names = cvGetPropertyNames(array);
  std::string text = names.empty() ? described(array) : cvGetClassName(array) + " with properties:";
  for (const std::string& name : names) {
    const cvUniquePtr value(cvGetProperty(array, 0, name.c_str()));
    text += "\n    " + name + ": " +
            inline_text(value.get(), display_limits().width - indent_width - name.size() % indent_width);
  }
  return text;
}

std::string character_rows(const cvArray_tag* array, bool with_quotes) {
  if (cvGetDimensions(array).size() > 2) return described(array);
  const ustring& characters = cvGetCharacters(array);
  const std::size_t rows = cvGetDimensions(array)[0];
  const std::size_t shown = std::min(rows, display_limits().lines);
  std::string result;
  for (std::size_t row = 0; row < shown; ++row) {
    ustring line;
    for (std::size_t i = row; i < characters.size(); i += rows) line += characters[i];
    const std::string text = kmf::ustring_to_utf8_string(line);
    result += (row > 0 ? "\n" : "") + (with_quotes ? "    " + quoted(text) : text);
  }
  if (shown < rows)
    result += "\n    ... and " + std::to_string(rows - shown) + (rows - shown == 1 ? " more row" : " more rows");
  return result;
}

/// Whether a cell array has only texts in it, and not too many for a line.
bool is_list_of_texts(const cvArray_tag* array) {
  const std::size_t count = cvIsCell(array) ? cvGetNumberOfElements(array) : 0;
  if (count == 0 || count > most_inline_elements) return false;
  for (std::size_t i = 0; i < count; ++i) {
    if (!is_text(cvGetCell(array, i))) return false;
  }
  return true;
}

}  // namespace

std::string significant_text(double value, int digits) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Inf" : "-Inf";
  if (value == 0) return "0";  // without the sign that it may have
  constexpr int most_digits = 50;
  std::array<char, 128> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.*g", std::min(digits, most_digits), value);
  return buffer.data();
}

std::string number_text(double value, int digits) {
  const double whole_limit = 1e15;
  const bool whole = value == std::floor(value) && std::abs(value) < whole_limit;
  return significant_text(value, whole ? long_digits : digits);
}

std::string whole_number_text(double value) {
  constexpr double limit = 1e21;
  constexpr int most_digits = 17;
  if (!(std::abs(value) < limit) || value == 0) return significant_text(value, most_digits);
  std::array<char, 64> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.0f", value);
  return buffer.data();
}

int usual_digits(double value) {
  constexpr int decimals = 4;
  if (!std::isfinite(value) || value == 0) return short_digits;
  return std::clamp(static_cast<int>(std::floor(std::log10(std::abs(value)))) + 1 + decimals, short_digits,
                    long_digits);
}

std::string number_text(double value) {
  constexpr int most_digits = 17;
  const bool plain = !std::isfinite(value) || value == std::floor(value);
  return plain ? number_text(value, most_digits) : expression::print_number(value);
}

std::string described(const cvArray_tag* array) {
  return "[" + shape_text(cvGetDimensions(array)) + " " + cvGetClassName(array) + "]";
}

std::string inline_text(const cvArray_tag* array, std::size_t width) {
  std::string text = inline_value(array, width);
  const bool fits = !text.empty() && text.size() <= std::max<std::size_t>(width, 2 * indent_width);
  return fits && text.find('\n') == std::string::npos ? text : described(array);
}

std::string text_beside(const cvArray_tag* array, std::size_t width) {
  constexpr std::size_t longest_text = 200;
  if (is_text(array) && cvGetNumberOfElements(array) > 0) return quoted_start(array, std::max(longest_text, width));
  return inline_text(array, is_list_of_texts(array) ? std::max(longest_text, width) : width);
}

std::string display_text(const cvArray_tag* array) {
  const cvClassID class_id = cvGetClassID(array);
  if (class_id == cvFUNCTION_CLASS) return cvGetFunctionText(array);
  if (class_id == cvOBJECT_CLASS) return object_text(array);
  if (is_text(array)) return kmf::cvarray_to_string(array);
  if (class_id == cvSTRUCT_CLASS) return structure_text(array);
  if (cvGetNumberOfElements(array) == 0) return empty_text(array);
  if (class_id == cvCELL_CLASS) return cell_text(array);
  if (class_id == cvCHAR_CLASS) return character_rows(array, false);
  const Numbers numbers = numbers_of(array);
  return numbers.is_scalar() ? element_text(numbers, 0) : matrix_text(numbers);
}

std::string named_text(const std::string& name, const cvArray_tag* array) {
  if (cvIsChar(array)) {
    if (cvGetNumberOfElements(array) == 0) return name + " = " + empty_text(array);
    if (is_text(array)) return name + " = " + quoted(kmf::cvarray_to_string(array));
    return name + " =\n" + character_rows(array, true);
  }
  const std::string text = display_text(array);
  const bool several_structures = cvIsStruct(array) && cvGetNumberOfElements(array) != 1;
  const bool one_line =
      several_structures || (text.find('\n') == std::string::npos && !text.empty() && text.front() != ' ');
  return name + (one_line ? " = " : " =\n") + text;
}

DisplayLimits& display_limits() {
  static DisplayLimits limits;
  return limits;
}

void set_display_sink(DisplaySink its_sink) {
  sink() = its_sink;
}

void display(const std::string& text) {
  sink()(text + "\n");
}

void write_output(const std::string& text) {
  sink()(text);
}

void set_error_sink(DisplaySink its_sink) {
  error_sink() = its_sink;
}

void write_error_output(const std::string& text) {
  error_sink()(text);
}

}  // namespace embedded::scripting_runtime
