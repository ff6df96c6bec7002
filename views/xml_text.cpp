#include "views/xml_text.hpp"

namespace kinemo::views {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// The text that stands for an ASCII character.
std::string_view written(const char& c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return c >= 0 && c < ' ' ? replacement : std::string_view(&c, 1);
  }
}

/// Whether three bytes are the UTF-8 of a character that XML excludes.
bool is_excluded(std::string_view text) {
  if (text.size() < 3) return false;
  const bool surrogate = text[0] == '\xED' && static_cast<unsigned char>(text[1]) >= 0xA0;
  const std::string_view start = text.substr(0, 3);
  return surrogate || start == "\xEF\xBF\xBE" || start == "\xEF\xBF\xBF";
}

}  // namespace

std::string xml_text(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const bool excluded = is_excluded(text);
    result += excluded ? replacement : written(text.front());
    text.remove_prefix(excluded ? 3 : 1);
  }
  return result;
}

}  // namespace kinemo::views
