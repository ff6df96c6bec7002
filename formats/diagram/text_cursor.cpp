#include "formats/diagram/text_cursor.hpp"

namespace kinemo::formats::diagram {

namespace {

bool continues_character(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

void TextCursor::step_forward() {
  const bool ends_line = text_[byte_] == '\n';
  ++character_;
  do {
    ++byte_;
  } while (byte_ < text_.size() && continues_character(text_[byte_]));
  if (!ends_line) return;
  ++line_;
  line_start_ = byte_;
}

void TextCursor::step_back() {
  --character_;
  do {
    --byte_;
  } while (byte_ > 0 && continues_character(text_[byte_]));
  if (text_[byte_] != '\n') return;
  --line_;
  const std::size_t before = byte_ == 0 ? std::string_view::npos : text_.rfind('\n', byte_ - 1);
  line_start_ = before == std::string_view::npos ? 0 : before + 1;
}

TextCursor::Position TextCursor::at_character(std::size_t number) {
  while (character_ > number) step_back();
  while (character_ < number && byte_ < text_.size()) step_forward();
  return position();
}

TextCursor::Position TextCursor::at_byte(std::size_t offset) {
  while (byte_ > offset) step_back();
  while (byte_ < offset && byte_ < text_.size()) step_forward();
  return position();
}

}  // namespace kinemo::formats::diagram
