#include "formats/diagram/yaml_text.hpp"

#include "platform/foundation/strings.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cctype>

namespace kinemo::formats::diagram {

namespace {

/// Keys longer than this stand behind a "?": readers look 1024 characters ahead for the colon.
constexpr std::size_t longest_plain_key = 500;

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool is_alphanumeric(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 && static_cast<unsigned char>(c) < 0x80;
}

/// Characters that mean nothing to YAML wherever they stand inside of a plain text.
bool is_harmless(char c) {
  return is_alphanumeric(c) || std::string_view("_.+*/()^<>=$@;-~ ").find(c) != std::string_view::npos;
}

bool can_begin_plain(std::string_view text) {
  const char next = text.size() > 1 ? text[1] : ' ';
  if (text[0] == '-') return is_alphanumeric(next) || next == '.';
  if (text[0] == '.') return is_digit(next) || next == '/';
  return is_alphanumeric(text[0]) || text[0] == '_' || text[0] == '/' || text[0] == '(';
}

/// Words that some reader of YAML takes for something else than text.
bool is_word_of_yaml(std::string_view text) {
  static constexpr std::array<std::string_view, 7> words{"null", "true", "false", "yes", "no", "on", "off"};
  return text.size() <= 5 && std::find(words.begin(), words.end(), kmf::lower(std::string(text))) != words.end();
}

bool is_plain(std::string_view text) {
  return !text.empty() && can_begin_plain(text) && text.back() != ' ' &&
         std::all_of(text.begin(), text.end(), is_harmless) && !is_word_of_yaml(text);
}

bool looks_like_number(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of("-."), text.size() - 1);
  return is_digit(text[first]);
}

/// Whether a character may stand in a file as it is: printable, and no break of lines.
bool is_printable(char32_t c) {
  if (c < 0xA0) return c >= 0x20 && c <= 0x7E;
  return c != 0x2028 && c != 0x2029 && c != 0xFEFF && c != 0xFFFE && c != 0xFFFF;
}

std::string escaped(char32_t c) {
  switch (c) {
    case U'\n':
      return "\\n";
    case U'\t':
      return "\\t";
    case U'"':
      return "\\\"";
    case U'\\':
      return "\\\\";
    default:
      return fmt::format("\\u{:04X}", static_cast<std::uint32_t>(c));
  }
}

/// Bytes of the character that begins with `lead`; the text is UTF-8.
std::size_t size_of_character(unsigned char lead) {
  return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

char32_t character(std::string_view bytes) {
  const auto lead = static_cast<unsigned char>(bytes[0]);
  char32_t value = bytes.size() == 1 ? lead : lead & (0x7Fu >> bytes.size());
  for (const char byte : bytes.substr(1)) value = (value << 6) | (static_cast<unsigned char>(byte) & 0x3Fu);
  return value;
}

}  // namespace

std::string yaml_quoted(std::string_view text) {
  std::string result = "\"";
  for (std::size_t at = 0; at < text.size();) {
    const std::string_view bytes = text.substr(at, size_of_character(static_cast<unsigned char>(text[at])));
    const char32_t c = character(bytes);
    if (is_printable(c) && c != U'"' && c != U'\\') {
      result += bytes;
    } else {
      result += escaped(c);
    }
    at += bytes.size();
  }
  return result + '"';
}

std::string yaml_value(std::string_view text) {
  return is_plain(text) ? std::string(text) : yaml_quoted(text);
}

std::string yaml_name(std::string_view text) {
  return is_plain(text) && !looks_like_number(text) ? std::string(text) : yaml_quoted(text);
}

std::string yaml_list(const std::vector<std::string>& items) {
  return fmt::format("[{}]", fmt::join(items, ", "));
}

std::string yaml_mapping(const YamlEntries& entries) {
  std::string text = "{";
  for (const auto& [key, value] : entries) text += (text.size() == 1 ? "" : ", ") + key + ": " + value;
  return text + "}";
}

std::string yaml_key(std::size_t indent, const std::string& key, const std::string& behind) {
  const std::string blanks(indent, ' ');
  return key.size() <= longest_plain_key ? blanks + key + behind : blanks + "? " + key + "\n" + blanks + behind;
}

}  // namespace kinemo::formats::diagram
