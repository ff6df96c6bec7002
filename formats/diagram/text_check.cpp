#include "formats/diagram/text_check.hpp"

#include <algorithm>

namespace kinemo::formats::diagram {

namespace {

/// How many bytes the character at `at` takes; 0 where no character of UTF-8 begins.
std::size_t character_size(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(at);
  if (lead < 0x80) return 1;
  const std::size_t size = lead >= 0xC2 && lead < 0xE0   ? 2
                           : lead >= 0xE0 && lead < 0xF0 ? 3
                           : lead >= 0xF0 && lead < 0xF5 ? 4
                                                         : 0;
  if (size == 0 || at + size > text.size()) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return 0;
  }
  const unsigned char second = byte(at + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool out_of_range = (lead == 0xED && second >= 0xA0) || (lead == 0xF4 && second >= 0x90);
  return overlong || out_of_range ? 0 : size;
}

bool is_text_control(char c) {
  return c == '\t' || c == '\n' || c == '\r';
}

BadByte describe(std::string_view text, std::size_t at, std::string what) {
  const std::string_view before = text.substr(0, at);
  BadByte bad;
  bad.line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
  const std::size_t line_start = before.rfind('\n');
  bad.column = line_start == std::string_view::npos ? at + 1 : at - line_start;
  bad.text = std::move(what);
  return bad;
}

}  // namespace

std::optional<BadByte> find_bad_byte(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = character_size(text, at);
    if (size == 0) return describe(text, at, "the file isn't text in UTF-8");
    const char c = text[at];
    if (size == 1 && (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) && !is_text_control(c)) {
      return describe(text, at, "the file holds a control character, so it isn't a text file");
    }
    at += size;
  }
  return std::nullopt;
}

}  // namespace kinemo::formats::diagram
