#include "formats/spice/expression_reader.hpp"

#include <algorithm>
#include <cctype>

namespace kinemo::formats::spice {

namespace {

bool is_identifier_part(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

/// Collects literals and expressions in their order.
class PieceList {
 public:
  void literal(std::string_view text) {
    if (m_pieces.empty() || m_pieces.back().expression != nullptr) {
      m_pieces.emplace_back();
    }
    m_pieces.back().literal += text;
  }
  /// The literal is what stays where the expression has no value.
  void expression(std::string_view text, SharedExpression value) {
    m_pieces.push_back({std::string(text), std::move(value)});
  }
  TextPieces take() { return std::move(m_pieces); }

 private:
  TextPieces m_pieces;
};

}  // namespace

bool is_identifier(std::string_view word) {
  return !word.empty() && std::isdigit(static_cast<unsigned char>(word.front())) == 0 &&
         std::all_of(word.begin(), word.end(), is_identifier_part);
}

const Function* ExpressionReader::find_function(const std::string& name) const {
  for (const Definition* scope = &m_definition;;) {
    if (const auto found = scope->functions.find(name); found != scope->functions.end()) {
      return &found->second;
    }
    if (scope->parent < 0) {
      return nullptr;
    }
    scope = &m_netlist.definitions[static_cast<std::size_t>(scope->parent)];
  }
}

SharedExpression ExpressionReader::try_read(std::string_view text, ExpressionError& error) const {
  if (!is_enclosed(text)) {
    if (const auto number = parse_number(text)) {
      return std::make_shared<const Expression>(Expression::of_number(*number));
    }
  }
  const std::string_view inner = enclosed_text(text);
  const auto parsed = parse_expression(inner, error);
  const auto expanded = parsed ? with_functions(
                                     *parsed, [this](const std::string& name) { return find_function(name); }, error)
                               : std::nullopt;
  if (!expanded) {
    error.offset += static_cast<std::size_t>(inner.data() - text.data());
    return nullptr;
  }
  return std::make_shared<const Expression>(*expanded);
}

SharedExpression ExpressionReader::read(const Card& card, std::size_t offset, std::string_view text) {
  ExpressionError error;
  SharedExpression value = try_read(text, error);
  if (value == nullptr) {
    m_reporter.mistake("spice:bad_expression", card.place(offset + error.offset), error.text);
  }
  return value;
}

TextPieces ExpressionReader::pieces(std::string_view text, bool all_names) const {
  PieceList list;
  const Card card(text, {});
  ExpressionError error;
  bool behind_equals = false;
  std::size_t done = 0;
  for (CardCursor cursor(card); !cursor.at_end();) {
    const std::size_t begin = cursor.offset();
    const std::string_view word = cursor.next();
    const std::size_t end = begin + word.size();
    const bool is_name = is_identifier(word) && (all_names || behind_equals) &&
                         !(end < text.size() && text[end] == '(') && cursor.peek() != "=";
    const bool is_value = is_enclosed(word) && word.front() != '"';
    behind_equals = word == "=";
    SharedExpression value = is_name || is_value ? try_read(word, error) : nullptr;
    if (value != nullptr) {
      list.literal(text.substr(done, begin - done));
      list.expression(word, std::move(value));
      done = end;
    }
  }
  list.literal(text.substr(done));
  return list.take();
}

}  // namespace kinemo::formats::spice
