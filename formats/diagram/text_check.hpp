// A look at the bytes of a model file before it is parsed: text in UTF-8, or where it stops being that.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kinemo::formats::diagram {

struct BadByte {
  std::size_t line = 1;
  std::size_t column = 1;  ///< in bytes
  std::string text;        ///< what is wrong there
};

/// The first byte that isn't part of UTF-8 text, or that no text file holds.
std::optional<BadByte> find_bad_byte(std::string_view text);

}  // namespace kinemo::formats::diagram
