#include "apps/scripting/text_table.hpp"

#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/display.hpp"

#include <algorithm>

namespace kinemo::scripting {

namespace {

using Row = std::vector<std::string>;

constexpr std::size_t longest_text = 60;

/// Characters, where each is one column wide.
std::size_t width_of(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string shortened(const std::string& text) {
  if (width_of(text) <= longest_text) return text;
  std::size_t end = 0;
  for (std::size_t characters = 0; end < text.size(); ++end) {
    const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
    if (begins && ++characters > longest_text - 3) break;
  }
  return text.substr(0, end) + "...";
}

Row shown_row(const Row& row) {
  Row shown;
  for (const std::string& text : row) shown.push_back(shortened(embedded::expression::without_controls(text)));
  return shown;
}

std::string line_of(const Row& row, const std::vector<std::size_t>& widths) {
  std::string line;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (widths[i] != 0) line += "  " + row[i] + std::string(widths[i] - width_of(row[i]), ' ');
  }
  return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

void show_table(const Row& heading, const std::vector<Row>& rows, const std::string& nothing) {
  namespace sr = embedded::scripting_runtime;
  if (rows.empty()) return sr::display(nothing);
  const std::size_t count = std::min(rows.size(), sr::display_limits().lines);
  std::vector<Row> shown;
  std::vector<std::size_t> widths(heading.size(), 0);
  for (std::size_t i = 0; i < count; ++i) {
    shown.push_back(shown_row(rows[i]));
    for (std::size_t k = 0; k < widths.size(); ++k) widths[k] = std::max(widths[k], width_of(shown.back()[k]));
  }
  for (std::size_t k = 0; k < widths.size(); ++k) {
    if (widths[k] != 0) widths[k] = std::max(widths[k], width_of(heading[k]));
  }
  sr::display(line_of(heading, widths));
  for (const Row& row : shown) sr::display(line_of(row, widths));
  if (count < rows.size()) {
    sr::display("  ... and " + std::to_string(rows.size() - count) + " more; an output takes all of them");
  }
}

}  // namespace kinemo::scripting
