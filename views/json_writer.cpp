#include "views/json_writer.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ostream>

namespace kinemo::views {

std::string number_text(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number < 0 ? "-Inf" : "Inf";
  char buffer[32];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

JsonWriter& JsonWriter::begin(char bracket, bool inline_contents) {
  separate();
  out_ << bracket;
  const bool inside_inline = !levels_.empty() && levels_.back().inline_contents;
  levels_.push_back({inline_contents || inside_inline, true});
  return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
  const Level level = levels_.back();
  levels_.pop_back();
  if (!level.empty && !level.inline_contents) new_line();
  out_ << bracket;
  return *this;
}

void JsonWriter::new_line() {
  // Very deep documents would be mostly blanks.
  constexpr std::size_t deepest_indentation = 40;
  out_ << '\n' << std::string(2 * std::min(levels_.size(), deepest_indentation), ' ');
}

void JsonWriter::separate() {
  if (after_key_) {
    after_key_ = false;
    return;
  }
  if (levels_.empty()) return;
  Level& level = levels_.back();
  if (!level.empty) out_ << (level.inline_contents ? ", " : ",");
  if (!level.inline_contents) new_line();
  level.empty = false;
}

JsonWriter& JsonWriter::key(std::string_view name) {
  separate();
  write_text(name);
  out_ << ": ";
  after_key_ = true;
  return *this;
}

JsonWriter& JsonWriter::value(std::string_view text) {
  separate();
  write_text(text);
  return *this;
}

JsonWriter& JsonWriter::value(double number) {
  if (!std::isfinite(number)) return value(number_text(number));
  separate();
  out_ << number_text(number);
  return *this;
}

JsonWriter& JsonWriter::value(std::size_t number) {
  separate();
  out_ << number;
  return *this;
}

JsonWriter& JsonWriter::value(bool on) {
  separate();
  out_ << (on ? "true" : "false");
  return *this;
}

void JsonWriter::write_text(std::string_view text) {
  static const char digits[] = "0123456789abcdef";
  out_ << '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out_ << '\\' << c;
    } else if (c == '\n') {
      out_ << "\\n";
    } else if (c == '\t') {
      out_ << "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      out_ << "\\u00" << digits[byte >> 4] << digits[byte & 15];
    } else {
      out_ << c;
    }
  }
  out_ << '"';
}

void JsonWriter::finish() {
  out_ << '\n';
}

}  // namespace kinemo::views
