// Numbers as texts: for people, and as an expression that reads back.

#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <cmath>
#include <optional>

namespace embedded::scripting_runtime {

namespace {

/// The digits that the second input tells. @throws "NotScalar" (function, input)
std::optional<int> told_digits(const Call& call) {
  constexpr double most_digits = 50;
  if (call.size() < 2 || cvIsChar(call[1])) return std::nullopt;
  return static_cast<int>(std::clamp(call.number(1), 1.0, most_digits));
}

/// "1-2i"; `part` writes one of the two numbers.
template <class Part>
std::string joined_parts(const Numbers& numbers, std::size_t i, Part part) {
  if (!numbers.is_complex()) return part(numbers.re[i]);
  const std::string imaginary = part(numbers.im[i]);
  return part(numbers.re[i]) + (imaginary.front() == '-' ? "" : "+") + imaginary + "i";
}

// --- num2str

bool is_whole(const std::vector<double>& values) {
  return std::all_of(values.begin(), values.end(), [](double x) { return !std::isfinite(x) || x == std::floor(x); });
}

/// The digits for numbers that aren't all whole: four behind the point of the largest, five at least.
int digits_for(const Numbers& numbers) {
  int digits = usual_digits(0);
  for (const double value : numbers.re) digits = std::max(digits, usual_digits(value));
  for (const double value : numbers.im) digits = std::max(digits, usual_digits(value));
  return digits;
}

std::vector<std::string> element_texts(const Numbers& numbers, std::optional<int> digits) {
  const bool whole = !digits && is_whole(numbers.re) && is_whole(numbers.im);
  const int significant = digits ? *digits : digits_for(numbers);
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    texts.push_back(joined_parts(
        numbers, i, [&](double x) { return whole ? whole_number_text(x) : significant_text(x, significant); }));
  }
  return texts;
}

/// [1 20;3 4] is "1  20" above "3   4".
cvUniquePtr matrix_as_text(const Numbers& numbers, const std::vector<std::string>& texts) {
  std::vector<std::string> lines(numbers.rows());
  for (std::size_t column = 0; column < numbers.columns(); ++column) {
    const auto first = texts.begin() + static_cast<std::ptrdiff_t>(column * lines.size());
    std::size_t width = 0;
    for (std::size_t row = 0; row < lines.size(); ++row) width = std::max(width, first[row].size());
    for (std::size_t row = 0; row < lines.size(); ++row) {
      lines[row] += (column > 0 ? "  " : "") + std::string(width - first[row].size(), ' ') + first[row];
    }
  }
  std::vector<Value> rows;
  for (const std::string& line : lines) rows.emplace_back(cvUniquePtr(cvCreateString(line)));
  return std::move(joined_in_column(std::move(rows))).release();
}

void number_to_text(Call& call) {
  if (cvIsChar(call[0])) return call.give(cvUniquePtr(cvCreateSharedCopy(call[0])));
  if (call.size() > 1 && cvIsChar(call[1])) return call.give(format_text(call.text(1), {call[0]}));
  const Numbers numbers = numbers_of(call[0]);
  if (numbers.size() == 0) return call.give(std::string());
  if (!numbers.is_matrix()) throw_runtime_error("NotMatrix", shape_text(numbers.shape));
  call.give(matrix_as_text(numbers, element_texts(numbers, told_digits(call))));
}

// --- mat2str

std::string quoted_row(const ustring& characters, std::size_t row, std::size_t rows) {
  ustring line;
  for (std::size_t i = row; i < characters.size(); i += rows) line += characters[i];
  return expression::print_text(kmf::ustring_to_utf8_string(line));
}

/// The elements by rows as they are written in an expression, in brackets where there are several.
template <class ElementText>
std::string bracketed(std::size_t rows, std::size_t columns, ElementText element) {
  std::string result;
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      result += (column > 0 ? " " : row > 0 ? ";" : "") + element(row, column);
    }
    checked_count({1, result.size()});
  }
  return rows * columns == 1 ? result : "[" + result + "]";
}

std::string numbers_expression(const Numbers& numbers, int digits) {
  if (numbers.size() == 0) {
    return "zeros(" + std::to_string(numbers.shape[0]) + "," + std::to_string(numbers.shape[1]) + ")";
  }
  const auto part = [&](double x) {
    if (numbers.class_id == cvLOGICAL_CLASS) return std::string(x != 0 ? "true" : "false");
    return is_integer_class(numbers.class_id) ? whole_number_text(x) : significant_text(x, digits);
  };
  return bracketed(numbers.rows(), numbers.columns(), [&](std::size_t row, std::size_t column) {
    return joined_parts(numbers, column * numbers.rows() + row, part);
  });
}

std::string characters_expression(const cvArray_tag* array) {
  const ustring& characters = cvGetCharacters(array);
  const std::size_t rows = cvGetDimensions(array)[0];
  if (characters.empty()) return "''";
  return bracketed(rows, 1, [&](std::size_t row, std::size_t) { return quoted_row(characters, row, rows); });
}

/// mat2str(x), mat2str(x, digits), mat2str(x, 'class'), mat2str(x, digits, 'class')
void array_to_expression(Call& call) {
  constexpr int usual = 15;
  const Shape& shape = cvGetDimensions(call[0]);
  if (shape.size() > 2) throw_runtime_error("NotMatrix", shape_text(shape));
  if (cvIsChar(call[0])) return call.give(characters_expression(call[0]));
  const Numbers numbers = numbers_of(call[0]);
  const std::string text = numbers_expression(numbers, told_digits(call).value_or(usual));
  const bool with_class = call.size() > 1 && cvIsChar(call[call.size() - 1]);
  const bool plain = numbers.class_id == cvDOUBLE_CLASS || numbers.class_id == cvLOGICAL_CLASS;
  call.give(with_class && !plain ? class_name_of(numbers.class_id) + ("(" + text + ")") : text);
}

}  // namespace

std::vector<Builtin> number_text_builtins() {
  return {{"num2str", 1, 2, number_to_text}, {"mat2str", 1, 3, array_to_expression}};
}

}  // namespace embedded::scripting_runtime
