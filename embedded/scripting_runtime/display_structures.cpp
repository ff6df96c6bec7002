#include "embedded/scripting_runtime/display_structures.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/text_layout.hpp"

#include <algorithm>
#include <optional>
#include <vector>

namespace embedded::scripting_runtime {

namespace {

constexpr std::size_t deepest_structure = 5;
constexpr std::size_t indent_width = 4;

/// Fields below each other, their values aligned; those of a structure inside stand below its name.
void append_structure(const cvArray_tag* array, std::size_t element, std::size_t level, std::string& to) {
  const std::vector<std::string> fields = cvGetFieldNames(array);
  std::size_t longest = 0;
  for (const std::string& field : fields) longest = std::max(longest, field.size());
  const std::size_t taken = indent_width * level + longest + 2;
  const std::size_t width = std::max(display_limits().width, taken + indent_width) - taken;
  for (const std::string& field : fields) {
    const cvArray_tag* value = cvGetField(array, element, field.c_str());
    to += (to.empty() ? "" : "\n") + std::string(indent_width * level, ' ') + field + ":";
    if (cvIsStruct(value) && cvGetNumberOfElements(value) == 1 && level < deepest_structure) {
      append_structure(value, 0, level + 1, to);
    } else {
      to += std::string(longest - field.size() + 1, ' ') + text_beside(value, width);
    }
  }
}

// --- arrays of structures

std::string more_elements(std::size_t count) {
  return "\n    ... and " + std::to_string(count) + " more element" + (count == 1 ? "" : "s");
}

/// A column for each field and one in front with the places; line 0 is the head.
using Table = std::vector<std::vector<std::string>>;

Table table_of(const cvArray_tag* array, std::size_t rows, std::size_t widest) {
  Table table(1, std::vector<std::string>(rows + 1));
  for (std::size_t row = 1; row <= rows; ++row) table[0][row] = "(" + std::to_string(row) + ")";
  for (const std::string& field : cvGetFieldNames(array)) {
    std::vector<std::string> column{field};
    for (std::size_t i = 0; i < rows; ++i) column.push_back(inline_text(cvGetField(array, i, field.c_str()), widest));
    table.push_back(std::move(column));
  }
  return table;
}

/// The lines of a table; none where one would be wider than the display.
std::optional<std::string> table_text(const Table& table) {
  constexpr std::size_t gap = 2;
  std::vector<std::string> lines(table[0].size(), std::string(indent_width - gap, ' '));
  for (const std::vector<std::string>& column : table) {
    std::size_t width = 0;
    for (const std::string& text : column) width = std::max(width, text_width(text));
    for (std::size_t i = 0; i < lines.size(); ++i) {
      lines[i] += std::string(gap, ' ') + column[i];
      if (&column != &table.back()) lines[i] += std::string(width - text_width(column[i]), ' ');
      if (text_width(lines[i]) > display_limits().width) return std::nullopt;
    }
  }
  std::string result;
  for (const std::string& line : lines) result += "\n" + line.substr(0, line.find_last_not_of(' ') + 1);
  return result;
}

/// Whether each value can be read in a table: numbers, texts, and short lists of them.
bool is_shown_whole(const cvArray_tag* array, std::size_t rows, std::size_t widest) {
  for (const std::string& field : cvGetFieldNames(array)) {
    for (std::size_t i = 0; i < rows; ++i) {
      const cvArray_tag* value = cvGetField(array, i, field.c_str());
      const std::string text = inline_text(value, widest);
      if (text == described(value) || (cvIsChar(value) && text != text_beside(value, widest))) return false;
    }
  }
  return true;
}

std::string elements_text(const cvArray_tag* array, std::size_t count) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) {
    std::string fields;
    append_structure(array, i, 1, fields);
    result += "\n(" + std::to_string(i + 1) + ")\n" + fields;
  }
  return result;
}

/// Where there are no elements or too much in them: what there is alone.
std::string field_list(const cvArray_tag* array) {
  std::string result = shape_text(cvGetDimensions(array)) + " struct with fields:";
  for (const std::string& field : cvGetFieldNames(array)) result += "\n    " + field;
  return result;
}

std::string structures_text(const cvArray_tag* array) {
  constexpr std::size_t most_rows = 30;
  constexpr std::size_t most_lines = 60;  // of elements below each other
  const std::size_t count = cvGetNumberOfElements(array);
  const std::size_t fields = cvGetFieldNames(array).size();
  if (count == 0 || fields == 0) return field_list(array);
  const std::size_t rows = std::min(count, most_rows);
  const std::string head = shape_text(cvGetDimensions(array)) + " struct:";
  const std::string rest = rows < count ? more_elements(count - rows) : "";
  const bool few = count * (fields + 1) <= most_lines;
  for (const std::size_t widest : {60, 40, 24, 16}) {
    if (few && !is_shown_whole(array, rows, widest)) break;
    if (const auto table = table_text(table_of(array, rows, widest))) return head + *table + rest;
  }
  return few ? head + elements_text(array, count) : field_list(array);
}

}  // namespace

std::string structure_text(const cvArray_tag* array) {
  if (cvGetNumberOfElements(array) != 1) return structures_text(array);
  std::string result;
  append_structure(array, 0, 1, result);
  return result.empty() ? "    (a structure without fields)" : result;
}

}  // namespace embedded::scripting_runtime
