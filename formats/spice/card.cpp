#include "formats/spice/card.hpp"

#include <algorithm>

#include "formats/spice/text_file.hpp"

namespace kinemo::formats::spice {

namespace {

constexpr std::string_view operators = "+-*/^%<>=!&|?:\\";
constexpr std::string_view micro_sign = "\xC2\xB5";
/// Comes before parameters, also without a blank behind it.
constexpr std::string_view parameters_word = "params:";

bool is_operator(char c) {
  return operators.find(c) != std::string_view::npos;
}

/// The end of the enclosed word that begins at `begin`: behind its closing mark, or the end of an unclosed one.
std::size_t enclosed_end(std::string_view text, std::size_t begin) {
  const char open = text[begin];
  if (open != '{') {
    const std::size_t close = text.find(open, begin + 1);
    return close == std::string_view::npos ? text.size() : close + 1;
  }
  std::size_t depth = 0;
  for (std::size_t at = begin; at < text.size(); ++at) {
    depth += text[at] == '{' ? 1 : 0;
    if (text[at] == '}' && --depth == 0) {
      return at + 1;
    }
  }
  return text.size();
}

bool opens_enclosed(char c) {
  return c == '{' || c == '\'' || c == '"';
}

}  // namespace

SourcePlace source_place(const Place& place) {
  return {place.file == nullptr ? std::string() : place.file->shown_name, place.line, place.column};
}

bool is_blank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v' || c == '\x1A';  // the last: end of a DOS file
}

bool is_enclosed(std::string_view word) {
  return !word.empty() && opens_enclosed(word.front());
}

std::string_view enclosed_text(std::string_view word) {
  const bool is_whole = is_enclosed(word) && enclosed_end(word, 0) == word.size() && word.size() > 1 &&
                        word.back() == (word.front() == '{' ? '}' : word.front());
  return is_whole ? trimmed(word.substr(1, word.size() - 2)) : word;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && is_blank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

std::string_view first_character(std::string_view text) {
  std::size_t length = text.empty() ? 0 : 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
    ++length;
  }
  return text.substr(0, length);
}

std::string lower_case(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return result;
}

void Card::append(std::string_view text, const Place& place) {
  m_text += ' ';
  m_continuations.push_back({m_text.size(), place});
  m_text += text;
}

void Card::normalize() {
  if (m_text.find(micro_sign) != std::string::npos) {
    replace_micro_signs();
  }
  bool quoted = false;
  for (char& c : m_text) {
    quoted = quoted != (c == '"');
    if (!quoted && c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
}

void Card::replace_micro_signs() {
  std::string result;
  auto piece = m_continuations.begin();
  for (std::size_t at = 0; at <= m_text.size(); ++at) {
    for (; piece != m_continuations.end() && piece->offset == at; ++piece) {
      piece->offset = result.size();
    }
    const bool is_sign = m_text.compare(at, micro_sign.size(), micro_sign) == 0;
    result += is_sign ? "u" : m_text.substr(at, 1);
    at += is_sign ? micro_sign.size() - 1 : 0;
  }
  m_text = std::move(result);
}

Place Card::place(std::size_t offset) const {
  const auto after = std::upper_bound(m_continuations.begin(), m_continuations.end(), offset,
                                      [](std::size_t at, const Piece& piece) { return at < piece.offset; });
  const bool in_first = after == m_continuations.begin();
  Place place = in_first ? m_first : std::prev(after)->place;
  place.column += static_cast<std::uint32_t>(offset - (in_first ? 0 : std::prev(after)->offset));
  return place;
}

std::size_t CardCursor::skip_separators(std::size_t at) const {
  const std::string& text = m_card->text();
  while (at < text.size() && (is_blank(text[at]) || text[at] == ',' || text[at] == '(' || text[at] == ')')) {
    ++at;
  }
  return at;
}

std::size_t CardCursor::word_end(std::size_t begin) const {
  const std::string& text = m_card->text();
  if (begin >= text.size() || text[begin] == '=') {
    return std::min(begin + 1, text.size());
  }
  if (opens_enclosed(text[begin])) {
    return enclosed_end(text, begin);
  }
  if (text.compare(begin, parameters_word.size(), parameters_word) == 0) {
    return begin + parameters_word.size();
  }
  std::size_t at = begin;
  while (at < text.size() && !is_blank(text[at]) &&
         std::string_view(",()={").find(text[at]) == std::string_view::npos) {
    ++at;
  }
  return at;
}

std::size_t CardCursor::offset() const {
  return skip_separators(m_at);
}

std::string_view CardCursor::next() {
  const std::size_t begin = offset();
  m_at = word_end(begin);
  return std::string_view(m_card->text()).substr(begin, m_at - begin);
}

std::string_view CardCursor::peek() const {
  return CardCursor(*this).next();
}

bool CardCursor::at_assignment() const {
  CardCursor ahead(*this);
  const std::string_view name = ahead.next();
  return !name.empty() && name != "=" && ahead.peek() == "=";
}

bool CardCursor::skip_equals() {
  if (peek() != "=") {
    return false;
  }
  next();
  return true;
}

std::size_t CardCursor::value_end(std::size_t begin) const {
  const std::string& text = m_card->text();
  if (begin < text.size() && opens_enclosed(text[begin])) {
    return enclosed_end(text, begin);
  }
  std::size_t depth = 0;
  std::size_t at = begin;
  for (; at < text.size(); ++at) {
    if (text[at] == '(') {
      ++depth;
    } else if (text[at] == ')') {
      if (depth == 0) {
        break;
      }
      --depth;
    } else if (depth == 0 && (is_blank(text[at]) || text[at] == ',')) {
      break;
    }
  }
  return at;
}

/// Whether the expression that ended at `end` goes on behind blanks: an operator stands before or after them.
bool CardCursor::continues_at(std::size_t end, std::size_t& next) const {
  const std::string& text = m_card->text();
  next = end;
  while (next < text.size() && is_blank(text[next])) {
    ++next;
  }
  if (next == text.size() || text[next] == ',' || text[next] == ')') {
    return false;
  }
  return is_operator(text[next]) || (end > 0 && is_operator(text[end - 1]));
}

std::string_view CardCursor::next_value(bool joined) {
  const std::string& text = m_card->text();
  const std::size_t begin = skip_closing(m_at);
  std::size_t end = value_end(begin);
  for (std::size_t next = end; joined && continues_at(end, next);) {
    end = std::max(next + 1, value_end(next));
  }
  m_at = end;
  return trimmed(std::string_view(text).substr(begin, end - begin));
}

std::string_view CardCursor::rest() const {
  return trimmed(std::string_view(m_card->text()).substr(skip_closing(m_at)));
}

/// Blanks, and what closed a list that ended here.
std::size_t CardCursor::skip_closing(std::size_t at) const {
  const std::string& text = m_card->text();
  while (at < text.size() && (is_blank(text[at]) || text[at] == ',' || text[at] == ')')) {
    ++at;
  }
  return std::min(at, text.size());
}

}  // namespace kinemo::formats::spice
