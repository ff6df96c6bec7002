#include "apps/scripting/text_table.hpp"

#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/text_layout.hpp"

#include <algorithm>

namespace kinemo::scripting {

namespace {

namespace sr = embedded::scripting_runtime;
using Row = std::vector<std::string>;

constexpr std::size_t longest_text = 60;

std::string shortened(const std::string& text) {
  return sr::text_width(text) <= longest_text ? text : sr::on_one_line(text, longest_text);
}

Row shown_row(const Row& row) {
  Row shown;
  for (const std::string& text : row) shown.push_back(shortened(embedded::expression::without_controls(text)));
  return shown;
}

std::string line_of(const Row& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (widths[i] != 0) line += "  " + row[i] + std::string(widths[i] - sr::text_width(row[i]), ' ');
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

void show_table(const Row& heading, const std::vector<Row>& rows, const std::string& nothing) {
  if (rows.empty()) return sr::display(nothing);
  const std::size_t count = std::min(rows.size(), sr::display_limits().lines);
  std::vector<Row> shown;
  std::vector<std::size_t> widths(heading.size(), 0);
  for (std::size_t i = 0; i < count; ++i) {
    shown.push_back(shown_row(rows[i]));
    for (std::size_t k = 0; k < widths.size(); ++k) widths[k] = std::max(widths[k], sr::text_width(shown.back()[k]));
  }
  for (std::size_t k = 0; k < widths.size(); ++k) {
    if (widths[k] != 0) widths[k] = std::max(widths[k], sr::text_width(heading[k]));
  }
  sr::display(line_of(heading, widths));
  for (const Row& row : shown) sr::display(line_of(row, widths));
  if (count < rows.size()) {
    sr::display("  ... and " + std::to_string(rows.size() - count) + " more; an output takes all of them");
  }
}

}  // namespace kinemo::scripting
