// What stands behind the nodes on the cards of passive parts, sources of their own and modelled parts.

#include <algorithm>
#include <array>

#include "formats/spice/element_reader.hpp"
#include "formats/spice/model_lookup.hpp"

namespace kinemo::formats::spice {

namespace {

constexpr std::array<std::string_view, 15> source_words{"ac",  "am",       "dc",   "distof1", "distof2",
                                                        "exp", "external", "port", "portnum", "pulse",
                                                        "pwl", "sffm",     "sin",  "trnoise", "trrandom"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// Whether the word is a number or an expression in its marks, and nothing that could be a name.
bool is_plain_value(std::string_view word) {
  return (is_enclosed(word) && word.front() != '"') || parse_number(word).has_value();
}

bool is_value_key(const Element& element, std::string_view key) {
  return (key.size() == 1 && key.front() == element.kind->letter) ||
         (element.kind->letter == 'r' && key == "resistance") ||
         (element.kind->letter == 'c' && key == "capacitance") || (element.kind->letter == 'l' && key == "inductance");
}

}  // namespace

void ElementReader::add_text(Element& element, std::string_view text, bool all_names) {
  if (text.empty()) {
    return;
  }
  if (!element.text.empty()) {
    element.text.push_back({" ", nullptr});
  }
  for (TextPiece& piece : m_expressions.pieces(text, all_names)) {
    element.text.push_back(std::move(piece));
  }
}

/// The simulator knows more functions and signs for these than for parameters, so what can't be read is kept.
void ElementReader::add_circuit_expression(Element& element, std::string_view text, const Place& place) {
  ExpressionError error;
  const SharedExpression value = m_expressions.try_read(text, error);
  if (value == nullptr) {
    m_reporter.warning("spice:unread_expression", place,
                       "the expression is kept as it stands; parameters in it get no values: " + error.text);
  }
  element.text.push_back({std::string(text), value});
}

void ElementReader::read_value(CardCursor& cursor, Element& element) {
  const std::size_t offset = cursor.offset();
  const std::string_view text = cursor.next_value(false);
  const bool names_circuit = element.kind->shape == CardShape::passive && is_enclosed(text) &&
                             (text.find("v(") != std::string_view::npos || text.find("i(") != std::string_view::npos);
  ExpressionError error;
  if (names_circuit && m_expressions.try_read(text, error) == nullptr) {
    element.text.push_back({std::string(1, element.kind->letter) + "=", nullptr});
    add_circuit_expression(element, text, cursor.card().place(offset));
  } else {
    element.value = m_expressions.read(cursor.card(), offset, text);
  }
}

void ElementReader::read_passive(CardCursor& cursor, Element& element) {
  std::string text;
  while (!cursor.at_end()) {
    read_passive_word(cursor, element, text);
  }
  add_text(element, text);
  if (element.value != nullptr && element.value->has_probes()) {
    if (!element.text.empty()) {
      element.text.insert(element.text.begin(), {" ", nullptr});
    }
    element.text.insert(element.text.begin(), {std::string("'") + "'", element.value});
    element.text.insert(element.text.begin(), {std::string(1, element.kind->letter) + "=", nullptr});
    element.value.reset();
  }
}

/// A value, the name of a model or `name=value`; what is neither value nor model goes to `text`.
void ElementReader::read_passive_word(CardCursor& cursor, Element& element, std::string& text) {
  if (cursor.at_assignment()) {
    const std::string key(cursor.next());
    cursor.skip_equals();
    if (is_value_key(element, key) && element.value == nullptr) {
      read_value(cursor, element);
    } else {
      text += (text.empty() ? "" : " ") + key + "=" + std::string(cursor.next_value(false));
    }
    return;
  }
  const std::string word(cursor.peek());
  const bool plain = is_plain_value(word);
  const Model* model = plain ? nullptr : find_model(m_netlist, m_definition, word);
  if (model != nullptr && element.model == nullptr) {
    element.model = model;
    cursor.next();
  } else if (element.value == nullptr && word != "=") {
    read_value(cursor, element);
  } else {
    text += (text.empty() ? "" : " ") + word;
    cursor.next();
  }
}

/// What stands around a source's value. The value 0 is that of a card without one, where the waveform gives it; one
/// that is on the card stays there.
void ElementReader::add_waveform(Element& element, std::string_view before, std::string_view behind) {
  const bool has_text = !before.empty() || !behind.empty();
  const bool is_zero =
      element.value != nullptr && element.value->is_number() && element.value->steps().front().number == 0;
  if (has_text && is_zero) {
    element.value.reset();
    add_text(element, "dc 0");
  }
  add_text(element, before, true);
  add_text(element, behind, true);
}

void ElementReader::read_source(CardCursor& cursor, Element& element) {
  const std::string_view first = cursor.peek();
  if (!first.empty() && !contains(source_words, first) && !cursor.at_assignment()) {
    read_value(cursor, element);
    return add_waveform(element, {}, cursor.rest());
  }
  const std::string& text = cursor.card().text();
  const std::size_t begin = cursor.offset();
  std::ptrdiff_t depth = 0;
  for (std::size_t done = begin; !cursor.at_end();) {
    const std::size_t at = cursor.offset();
    const auto gap = std::string_view(text).substr(done, at - done);
    depth += std::count(gap.begin(), gap.end(), '(') - std::count(gap.begin(), gap.end(), ')');
    const std::string_view word = cursor.next();
    done = at + word.size();
    if (word == "dc" && depth == 0) {
      cursor.skip_equals();
      if (cursor.at_end() || contains(source_words, cursor.peek())) {
        continue;  // the waveform gives the value
      }
      read_value(cursor, element);
      return add_waveform(element, trimmed(std::string_view(text).substr(begin, at - begin)), cursor.rest());
    }
  }
  add_text(element, std::string_view(text).substr(std::min(begin, text.size())), true);
}

void ElementReader::read_modelled(CardCursor& cursor, Element& element) {
  if (element.model == nullptr && !read_model(cursor, element)) {
    return;
  }
  const bool takes_value = element.kind->parameters.find("value") != std::string_view::npos;
  if (takes_value && !cursor.at_assignment() && is_plain_value(cursor.peek())) {
    read_value(cursor, element);
  }
  add_text(element, cursor.rest());
}

void ElementReader::read_by_switch(CardCursor& cursor, Element& element) {
  element.elements = cursor.next();
  if (element.elements.empty()) {
    m_reporter.mistake("spice:bad_card", element.place,
                       "element '" + name(element) + "' names no source that controls it");
  } else if (read_model(cursor, element)) {
    add_text(element, cursor.rest());
  }
}

void ElementReader::read_coupling(CardCursor& cursor, Element& element) {
  std::vector<std::string_view> inductors;
  while (!cursor.at_end() && !cursor.at_assignment()) {
    const CardCursor before = cursor;
    const std::string_view word = cursor.next();
    if (cursor.at_end() || is_plain_value(word)) {  // the value is what stands last
      cursor = before;
      break;
    }
    inductors.push_back(word);
  }
  if (cursor.at_assignment()) {
    cursor.next();
    cursor.skip_equals();
  }
  if (inductors.size() < 2 || cursor.at_end()) {
    m_reporter.mistake("spice:bad_card", element.place,
                       "element '" + name(element) + "' needs two inductors or more and a coefficient");
    return;
  }
  for (const std::string_view inductor : inductors) {
    element.elements += std::string(element.elements.empty() ? "" : " ") + std::string(inductor);
  }
  read_value(cursor, element);
}

/// `v=expression` or `i=expression`, then temperature coefficients and the like.
void ElementReader::read_behavioral(CardCursor& cursor, Element& element) {
  const std::string quantity(cursor.peek());
  if (!cursor.at_assignment() || (quantity != "v" && quantity != "i")) {
    m_reporter.mistake("spice:bad_card", element.place,
                       "element '" + name(element) + "' needs 'v=expression' or 'i=expression'");
    return;
  }
  cursor.next();
  cursor.skip_equals();
  const std::size_t offset = cursor.offset();
  const std::string_view text = cursor.next_value(true);
  element.text.push_back({quantity + "=", nullptr});
  add_circuit_expression(element, text, cursor.card().place(offset));
  add_text(element, cursor.rest());
}

}  // namespace kinemo::formats::spice
