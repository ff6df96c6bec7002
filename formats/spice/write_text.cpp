#include "formats/spice/write_text.hpp"

#include <algorithm>
#include <cctype>

namespace kinemo::formats::spice {

namespace {

constexpr std::size_t line_length = 100;

/// The number of a mark that begins at the brace; 0 where there is none. `end` is what follows it.
std::size_t mark_at(const std::string& text, std::size_t brace, std::size_t& end) {
  std::size_t number = 0;
  end = brace + 1;
  for (; end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0 && number < text.size(); ++end) {
    number = number * 10 + static_cast<std::size_t>(text[end] - '0');
  }
  const bool is_mark = end > brace + 1 && end < text.size() && text[end] == '}';
  ++end;
  return is_mark ? number : 0;
}

bool is_part_of_name(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.' || c == '#' || c == '@';
}

/// Where the bracket of a v(...) or i(...) at the place is; npos where none stands there.
std::size_t probe_bracket(const std::string& text, std::size_t at) {
  const char letter = static_cast<char>(std::tolower(static_cast<unsigned char>(text[at])));
  if ((letter != 'v' && letter != 'i') || (at > 0 && is_part_of_name(text[at - 1]))) {
    return std::string::npos;
  }
  const std::size_t bracket = text.find_first_not_of(' ', at + 1);
  return bracket != std::string::npos && text[bracket] == '(' ? bracket : std::string::npos;
}

/// The names between the brackets, separated by commas or blanks, renamed.
std::string renamed(const std::string& names, const TextNames& lookup) {
  std::string result;
  for (std::size_t at = 0; at < names.size();) {
    const std::size_t end = std::min(names.find_first_of(", ", at), names.size());
    const std::string name = names.substr(at, end - at);
    result += name.empty() ? name : lookup(name).value_or(name);
    result += end < names.size() ? std::string(1, names[end]) : std::string();
    at = end + 1;
  }
  return result;
}

}  // namespace

std::optional<std::string> with_values(const std::string& text, const std::vector<WrittenExpression>& values) {
  std::string result;
  std::size_t depth = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = 0;
    const std::size_t number = text[at] == '{' ? mark_at(text, at, end) : 0;
    if (number == 0) {
      depth += text[at] == '{' ? 1 : 0;
      depth -= text[at] == '}' && depth > 0 ? 1 : 0;
      result += text[at++];
      continue;
    }
    if (number > values.size()) {
      return std::nullopt;
    }
    const WrittenExpression& value = values[number - 1];
    result += depth > 0 ? "(" + value.text + ")" : card_value(value);
    at = end;
  }
  return result;
}

std::string with_circuit_names(const std::string& text, const TextNames& nodes, const TextNames& elements) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t bracket = probe_bracket(text, at);
    const std::size_t end = bracket == std::string::npos ? bracket : text.find(')', bracket);
    if (end == std::string::npos) {
      result += text[at++];
      continue;
    }
    const bool is_voltage = std::tolower(static_cast<unsigned char>(text[at])) == 'v';
    result += text.substr(at, bracket + 1 - at);
    result += renamed(text.substr(bracket + 1, end - bracket - 1), is_voltage ? nodes : elements);
    at = end;
  }
  return result;
}

std::string folded(const std::string& card) {
  std::string result;
  std::size_t length = 0;
  std::size_t depth = 0;
  bool quoted = false;
  for (std::size_t at = 0; at < card.size(); ++at) {
    const char c = card[at];
    quoted = quoted != (c == '\'' || c == '"');
    depth += c == '(' || c == '{' ? 1 : 0;
    depth -= (c == ')' || c == '}') && depth > 0 ? 1 : 0;
    const std::size_t next = std::min(card.find(' ', at + 1), card.size());
    if (c == ' ' && depth == 0 && !quoted && length > 0 && length + next - at > line_length) {
      result += "\n+ ";
      length = 2;
    } else {
      result += c;
      ++length;
    }
  }
  return result + "\n";
}

}  // namespace kinemo::formats::spice
