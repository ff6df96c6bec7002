#pragma once

// From text to tree. A parser owns nothing between calls but the cache of `parse_cached`.

#include "embedded/expression/tree.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace embedded::expression {

/// Why and where a text isn't an expression. The words are in the catalogue, under the group
/// "kinemo:scripting:expression" and `id`, with the arguments detail, line, column, excerpt.
struct ParseError {
  std::string id;
  std::string detail;      ///< what was found there, or the opening bracket that isn't closed
  std::size_t line = 0;    ///< from 1
  std::size_t column = 0;  ///< from 1, in characters
  std::string excerpt;     ///< the line, or the part of it around the place, and below it a caret at the place
};

struct ParseResult {
  Tree tree;         ///< null on an error
  ParseError error;  ///< of use only when `tree` is null

  explicit operator bool() const noexcept { return tree != nullptr; }
};

/// Longer texts are refused ("TextTooLong").
constexpr std::size_t text_limit = std::size_t{1} << 30;

/// Parses one expression of UTF-8. Never throws for what is in the text.
ParseResult parse(std::string_view text);
/// As `parse`; equal texts share one tree. The cache is of limited size: it forgets what wasn't asked for lately.
ParseResult parse_cached(std::string_view text);
/// @throws kmf::MessageException "kinemo:scripting:expression" with the id of the parse error
Tree parse_or_throw(std::string_view text);
[[noreturn]] void throw_parse_error(const ParseError& error);

/// Place of a byte offset in `text`, for errors found after the parse.
struct Place {
  std::size_t line;
  std::size_t column;
  std::string excerpt;
};
Place place_of(std::string_view text, std::size_t offset);

}  // namespace embedded::expression
