#include "embedded/expression/parse.hpp"

#include "embedded/expression/parser.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>

namespace embedded::expression {

namespace {

constexpr std::size_t excerpt_half_width = 50;

bool is_continuation_byte(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::size_t count_characters(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return !is_continuation_byte(c); }));
}

/// The line around byte `at`, cut to a readable width, and a caret below the place.
std::string excerpt_of(std::string_view line, std::size_t at) {
  std::size_t begin = at > excerpt_half_width ? at - excerpt_half_width : 0;
  std::size_t end = std::min(line.size(), at + excerpt_half_width);
  while (begin > 0 && is_continuation_byte(line[begin])) --begin;
  while (end < line.size() && is_continuation_byte(line[end])) ++end;
  std::string shown = begin > 0 ? "..." : "";
  shown += line.substr(begin, end - begin);
  const std::size_t indent = (begin > 0 ? 3 : 0) + count_characters(line.substr(begin, at - begin));
  std::replace_if(
      shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
  if (end < line.size()) shown += "...";
  return shown + "\n" + std::string(indent, ' ') + "^";
}

ParseError error_at(std::string_view text, std::string id, std::string detail, std::size_t offset) {
  Place place = place_of(text, offset);
  return {std::move(id), std::move(detail), place.line, place.column, std::move(place.excerpt)};
}

}  // namespace

ParseResult parse(std::string_view text) {
  if (text.size() > text_limit) return {nullptr, error_at("", "TextTooLong", std::to_string(text_limit), 0)};
  try {
    return {Parser(text).whole_text(), {}};
  } catch (const Failure& failure) {
    return {nullptr, error_at(text, failure.id, failure.detail, failure.offset)};
  }
}

Tree parse_or_throw(std::string_view text) {
  ParseResult result = parse_cached(text);
  if (!result) throw_parse_error(result.error);
  return std::move(result.tree);
}

void throw_parse_error(const ParseError& error) {
  kmf::throw_message("kinemo:scripting:expression", error.id.c_str(), error.detail, std::to_string(error.line),
                     std::to_string(error.column), error.excerpt);
}

Place place_of(std::string_view text, std::size_t offset) {
  offset = std::min(offset, text.size());
  const std::string_view before = text.substr(0, offset);
  const auto line = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1;
  const std::size_t line_begin = before.rfind('\n') + 1;
  const std::size_t line_end = std::min(text.find('\n', offset), text.size());
  const std::size_t column = count_characters(before.substr(line_begin)) + 1;
  return {line, column, excerpt_of(text.substr(line_begin, line_end - line_begin), offset - line_begin)};
}

}  // namespace embedded::expression
