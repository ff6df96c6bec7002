// Finds the line and column of a character by its number. Parsers that count characters, and line breaks of their own,
// get the places that everything else shows: lines end at '\n', columns count bytes. The text outlives the cursor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kinemo::formats::diagram {

class TextCursor {
 public:
  struct Position {
    std::uint32_t line;    ///< from 1
    std::uint32_t column;  ///< from 1
  };

  /// The text is in UTF-8.
  explicit TextCursor(std::string_view text) : text_(text) {}

  /// Costs as much as the way from the place that was asked for before.
  Position at_character(std::size_t number);
  Position at_byte(std::size_t offset);

 private:
  void step_forward();
  void step_back();
  Position position() const {
    return {static_cast<std::uint32_t>(line_), static_cast<std::uint32_t>(byte_ - line_start_ + 1)};
  }

  std::string_view text_;
  std::size_t byte_ = 0;
  std::size_t character_ = 0;
  std::size_t line_ = 1;
  std::size_t line_start_ = 0;
};

}  // namespace kinemo::formats::diagram
