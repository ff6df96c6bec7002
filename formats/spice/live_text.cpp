#include "formats/spice/live_text.hpp"

#include <algorithm>
#include <cctype>
#include <unordered_map>

namespace kinemo::formats::spice {

namespace {

/// Length of braces with digits alone at the front of the text; 0 for anything else.
std::size_t mark_length(std::string_view text) {
  std::size_t at = 1;
  while (at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0) {
    ++at;
  }
  return text.front() == '{' && at > 1 && at < text.size() && text[at] == '}' ? at + 1 : 0;
}

/// What a card has as it stands may look like a mark, which it then must not.
std::string without_marks(std::string_view literal) {
  std::string text;
  for (std::size_t at = 0; at < literal.size();) {
    const std::size_t length = mark_length(literal.substr(at));
    if (length == 0) {
      text += literal[at++];
      continue;
    }
    text += "(" + std::string(literal.substr(at + 1, length - 2)) + ")";
    at += length;
  }
  return text;
}

class LiveTextWriter {
 public:
  LiveTextWriter(const ParameterScopes& scopes, std::size_t from, std::size_t at) : m_expressions(scopes, from, at) {}

  LiveText write(const TextPieces& pieces) {
    for (const TextPiece& piece : pieces) {
      m_result.text += piece.expression == nullptr ? without_marks(piece.literal) : text_of(piece);
    }
    m_result.has_fixed = m_expressions.has_fixed();
    return std::move(m_result);
  }

 private:
  std::string text_of(const TextPiece& piece) {
    ExpressionError error;
    const ValueLookup values = [this](const std::string& name) { return m_expressions.value(name); };
    if (const auto value = evaluate(*piece.expression, values, error)) {
      const Expression told = m_expressions.tell(*piece.expression);
      return told.has_names() ? mark(told) : number_text(*value);
    }
    const Expression told = m_expressions.tell_circuit(*piece.expression);
    if (!told.has_probes()) {
      return without_marks(piece.literal);
    }
    const NameTexts names = [this](const std::string& name) { return name_text(name); };
    return "{" + netlist_text(told, names) + "}";
  }

  /// A parameter within an expression of the running circuit; nothing for a name that means nothing here.
  std::optional<std::string> name_text(const std::string& name) {
    const Expression told = m_expressions.tell_name(name);
    if (told.is_number()) {
      return number_text(told.steps().front().number);
    }
    return m_expressions.value_there(name) ? std::optional<std::string>(mark(told)) : std::nullopt;
  }

  std::string mark(const Expression& value) {
    const auto [entry, is_new] = m_numbers.emplace(netlist_text(value, {}), m_result.values.size() + 1);
    if (is_new) {
      m_result.values.push_back(value);
    }
    return "{" + std::to_string(entry->second) + "}";
  }

  LiveExpressions m_expressions;
  LiveText m_result;
  std::unordered_map<std::string, std::size_t> m_numbers;  ///< of values, by their texts
};

}  // namespace

LiveText live_text(const TextPieces& pieces, const ParameterScopes& scopes, std::size_t from, std::size_t at) {
  return LiveTextWriter(scopes, from, at).write(pieces);
}

bool means_the_same(const LiveText& text, const ParameterScopes& scopes, std::size_t from, std::size_t at) {
  return std::all_of(text.values.begin(), text.values.end(), [&](const Expression& value) {
    const auto& steps = value.steps();
    return std::all_of(steps.begin(), steps.end(), [&](const ExpressionStep& step) {
      return step.operation != Operation::name || scopes.find(step.text, from) == scopes.find(step.text, at);
    });
  });
}

}  // namespace kinemo::formats::spice
