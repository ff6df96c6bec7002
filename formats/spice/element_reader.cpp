#include "formats/spice/element_reader.hpp"

#include <algorithm>
#include <array>
#include <cctype>

#include "formats/spice/model_lookup.hpp"

namespace kinemo::formats::spice {

namespace {

constexpr std::size_t most_dimensions = 10'000;

constexpr std::array<std::string_view, 15> source_words{"ac",  "am",       "dc",   "distof1", "distof2",
                                                        "exp", "external", "port", "portnum", "pulse",
                                                        "pwl", "sffm",     "sin",  "trnoise", "trrandom"};

constexpr std::array<std::string_view, 4> expression_words{"value", "vol", "cur", "table"};
/// Forms that the simulator's default mode has no place for, or that become digital parts.
constexpr std::array<std::string_view, 7> unsupported_forms{"laplace", "freq", "chebyshev", "and", "or", "nand", "nor"};

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

std::string supported_letters() {
  std::string letters;
  for (const ElementKind& kind : element_kinds) {
    letters += std::string(letters.empty() ? "" : " ") + static_cast<char>(std::toupper(kind.letter));
  }
  return letters + " X";
}

std::string node_count_text(const ElementKind& kind) {
  return kind.max_nodes == kind.min_nodes || kind.max_nodes == unlimited_nodes
             ? std::to_string(kind.min_nodes)
             : std::to_string(kind.letter == 'm' ? 4 : kind.min_nodes) + " to " + std::to_string(kind.max_nodes);
}

bool takes_three_nodes(const Model& model) {
  return !model.card.empty() && model.card.front().literal.compare(0, 5, "vdmos") == 0;
}

}  // namespace

ElementReader::ElementReader(Netlist& netlist, Definition& definition, Reporter& reporter)
    : m_netlist(netlist),
      m_definition(definition),
      m_reporter(reporter),
      m_expressions(netlist, definition, reporter) {}

void ElementReader::read(const Card& card, std::int32_t branch) {
  CardCursor cursor(card);
  const char letter = card.text().front();
  if (letter == 'x') {
    read_call(card, cursor, branch);
    return;
  }
  Element element;
  element.kind = find_element_kind(letter);
  element.name = m_netlist.names.add(cursor.next());
  element.branch = branch;
  element.place = card.place();
  if (element.kind == nullptr) {
    m_reporter
        .mistake("spice:unsupported_element", element.place,
                 "element '" + name(element) + "': elements with the letter '" +
                     std::string(1, static_cast<char>(std::toupper(letter))) + "' are not supported")
        .notes.push_back({"supported are " + supported_letters(), {}});
    return;
  }
  read_element(card, cursor, element);
  m_definition.elements.push_back(std::move(element));
}

void ElementReader::read_element(const Card&, CardCursor& cursor, Element& element) {
  const CardShape shape = element.kind->shape;
  const bool has_nodes = shape == CardShape::modelled && element.kind->min_nodes != element.kind->max_nodes
                             ? read_nodes_to_model(cursor, element)
                             : read_nodes(cursor, element, element.kind->min_nodes);
  if (!has_nodes) {
    return;
  }
  switch (shape) {
    case CardShape::passive:
      return read_passive(cursor, element);
    case CardShape::coupling:
      return read_coupling(cursor, element);
    case CardShape::source:
      return read_source(cursor, element);
    case CardShape::behavioral:
      return read_behavioral(cursor, element);
    case CardShape::modelled:
      return read_modelled(cursor, element);
    case CardShape::controlled:
      return read_controlled(cursor, element);
    case CardShape::by_source:
      return read_by_source(cursor, element);
    case CardShape::by_switch:
      return read_by_switch(cursor, element);
    case CardShape::parameters:
      return add_text(element, cursor.rest());
  }
}

// --- nodes and models

void ElementReader::report_node_count(const Element& element, std::size_t found) {
  m_reporter.mistake("spice:node_count", element.place,
                     "element '" + name(element) + "' has " + std::to_string(found) + " node(s) and needs " +
                         node_count_text(*element.kind));
}

bool ElementReader::read_nodes(CardCursor& cursor, Element& element, std::size_t count) {
  for (std::size_t found = 0; found < count; ++found) {
    if (cursor.at_end() || cursor.at_assignment()) {
      report_node_count(element, element.nodes.size());
      return false;
    }
    element.nodes.push_back(m_netlist.names.add(cursor.next()));
  }
  return true;
}

/// Reads up to the model's name, which the cursor then stands behind.
bool ElementReader::read_nodes_to_model(CardCursor& cursor, Element& element) {
  const Place first = cursor.place();
  std::vector<std::pair<std::string_view, Place>> words;
  while (words.size() <= element.kind->max_nodes && !cursor.at_end() && !cursor.at_assignment()) {
    const Place place = cursor.place();
    words.emplace_back(cursor.next(), place);
    element.model = words.size() > 2 || element.kind->min_nodes < 3
                        ? find_model(m_netlist, m_definition, std::string(words.back().first))
                        : nullptr;
    const std::size_t nodes = words.size() - 1;
    if (element.model == nullptr || nodes < std::min<std::size_t>(2, element.kind->min_nodes)) {
      continue;
    }
    const std::size_t least =
        element.kind->letter == 'm' && !takes_three_nodes(*element.model) ? 4 : element.kind->min_nodes;
    if (nodes < least) {
      report_node_count(element, nodes);
      return false;
    }
    for (std::size_t i = 0; i < nodes; ++i) {
      element.nodes.push_back(m_netlist.names.add(words[i].first));
    }
    return true;
  }
  if (words.size() <= element.kind->min_nodes) {
    report_node_count(element, words.empty() ? 0 : words.size() - 1);
  } else {
    const std::size_t likely =
        std::min(words.size() - 1, std::size_t{element.kind->letter == 'm' ? 4U : element.kind->min_nodes});
    report_unknown_model(element, words[likely].first, words.empty() ? first : words[likely].second);
  }
  return false;
}

bool ElementReader::read_model(CardCursor& cursor, Element& element) {
  const Place place = cursor.place();
  const std::string_view word = cursor.at_assignment() ? std::string_view() : cursor.next();
  element.model = find_model(m_netlist, m_definition, std::string(word));
  if (element.model == nullptr) {
    report_unknown_model(element, word, place);
  }
  return element.model != nullptr;
}

void ElementReader::report_unknown_model(const Element& element, std::string_view model, const Place& place) {
  if (model.empty()) {
    m_reporter.mistake("spice:unknown_model", element.place, "element '" + name(element) + "' names no model");
    return;
  }
  Diagnostic& mistake = m_reporter.mistake(
      "spice:unknown_model", place, "element '" + name(element) + "': there is no model '" + std::string(model) + "'");
  const std::string nearest(nearest_name(model, visible_models(m_netlist, m_definition)));
  if (!nearest.empty()) {
    mistake.notes.push_back({"did you mean '" + nearest + "'?", {}});
  }
  mistake.notes.push_back(
      {"an element of this kind has " + node_count_text(*element.kind) + " node(s), then its model", {}});
}

// --- what stands behind the nodes

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

void ElementReader::read_source(CardCursor& cursor, Element& element) {
  const std::string_view first = cursor.peek();
  if (!first.empty() && !contains(source_words, first) && !cursor.at_assignment()) {
    read_value(cursor, element);
    return add_text(element, cursor.rest(), true);
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
      add_text(element, trimmed(std::string_view(text).substr(begin, at - begin)), true);
      return add_text(element, cursor.rest(), true);
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

std::size_t ElementReader::read_dimensions(CardCursor& cursor, const Element& element) {
  const Place place = cursor.place();
  const auto number = parse_number(cursor.next());
  if (!number || *number < 1 || *number > static_cast<double>(most_dimensions)) {
    m_reporter.mistake("spice:bad_card", place,
                       "element '" + name(element) + "': a POLY form needs its number of dimensions, as in POLY(2)");
    return 0;
  }
  return static_cast<std::size_t>(*number);
}

void ElementReader::read_gain(CardCursor& cursor, Element& element) {
  if (cursor.at_assignment() && cursor.peek() == "gain") {
    cursor.next();
    cursor.skip_equals();
  }
  if (!cursor.at_end() && !cursor.at_assignment()) {
    read_value(cursor, element);
  }
  add_text(element, cursor.rest());
}

void ElementReader::read_controlled(CardCursor& cursor, Element& element) {
  if (cursor.peek() == (element.kind->letter == 'e' ? "vcvs" : "vccs")) {
    cursor.next();
  }
  const std::string_view form = cursor.peek();
  if (form == "poly") {
    cursor.next();
    const std::size_t dimensions = read_dimensions(cursor, element);
    if (dimensions != 0 && read_nodes(cursor, element, 2 * dimensions)) {
      add_text(element, "poly(" + std::to_string(dimensions) + ")");
      add_text(element, cursor.rest(), true);
    }
  } else if (contains(expression_words, form)) {
    read_controlled_expression(cursor, element);
  } else if (contains(unsupported_forms, form)) {
    m_reporter.mistake("spice:unsupported_form", cursor.place(),
                       "element '" + name(element) + "': the form '" + std::string(form) + "' is not supported");
  } else if (cursor.at_end()) {
    report_node_count(element, element.nodes.size());
  } else if (cursor.at_assignment()) {
    m_reporter.mistake("spice:unsupported_form", cursor.place(),
                       "element '" + name(element) + "': '" + std::string(form) +
                           "=' is no form of a controlled source; valid are value=, vol=, cur= and table");
  } else if (read_nodes(cursor, element, 2)) {
    read_gain(cursor, element);
  }
}

void ElementReader::read_controlled_expression(CardCursor& cursor, Element& element) {
  const std::string form(cursor.next());
  cursor.skip_equals();
  const std::size_t offset = cursor.offset();
  const std::string_view text = cursor.next_value(form != "table");
  element.text.push_back({form == "table" ? "table " : form + "=", nullptr});
  add_circuit_expression(element, text, cursor.card().place(offset));
  add_text(element, cursor.rest());
}

void ElementReader::read_by_source(CardCursor& cursor, Element& element) {
  if (cursor.peek() == (element.kind->letter == 'f' ? "cccs" : "ccvs")) {
    cursor.next();
  }
  std::size_t dimensions = 1;
  const bool is_polynomial = cursor.peek() == "poly";
  if (is_polynomial) {
    cursor.next();
    dimensions = read_dimensions(cursor, element);
  }
  for (std::size_t i = 0; i < dimensions; ++i) {
    const std::string_view source = cursor.at_assignment() ? std::string_view() : cursor.next();
    if (source.empty()) {
      m_reporter.mistake("spice:bad_card", element.place,
                         "element '" + name(element) + "' names " + std::to_string(i) +
                             " source(s) that control it and needs " + std::to_string(dimensions));
      return;
    }
    element.elements += std::string(element.elements.empty() ? "" : " ") + std::string(source);
  }
  if (is_polynomial) {
    add_text(element, "poly(" + std::to_string(dimensions) + ")");
    return add_text(element, cursor.rest(), true);
  }
  read_gain(cursor, element);
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

// --- calls

void ElementReader::read_call(const Card& card, CardCursor& cursor, std::int32_t branch) {
  Call call;
  call.name = m_netlist.names.add(cursor.next());
  call.branch = branch;
  call.place = card.place();
  std::vector<std::pair<std::string_view, Place>> words;
  while (!cursor.at_end() && !cursor.at_assignment() && cursor.peek() != "params:") {
    const Place place = cursor.place();
    words.emplace_back(cursor.next(), place);
  }
  if (words.empty()) {
    m_reporter.mistake(
        "spice:bad_card", call.place,
        "'" + m_netlist.names.text(call.name) + "' calls nothing; a call is written as 'xname nodes definition'");
    return;
  }
  call.target = words.back().first;
  for (std::size_t i = 0; i + 1 < words.size(); ++i) {
    call.nodes.push_back(m_netlist.names.add(words[i].first));
  }
  resolve(call, words.back().second);
  read_call_parameters(card, cursor, call);
  m_definition.calls.push_back(std::move(call));
}

void ElementReader::resolve(Call& call, const Place& target) {
  call.definition = find_definition(m_netlist, m_definition, call.target);
  if (call.definition >= 0) {
    return;
  }
  Diagnostic& mistake = m_reporter.mistake(
      "spice:unknown_subcircuit", target,
      "'" + m_netlist.names.text(call.name) + "' calls the subcircuit '" + call.target + "', which isn't defined");
  const auto visible = visible_definitions(m_netlist, m_definition);
  const std::string nearest(nearest_name(call.target, visible));
  if (!nearest.empty()) {
    mistake.notes.push_back({"did you mean '" + nearest + "'?", {}});
  } else if (!call.nodes.empty() &&
             find_definition(m_netlist, m_definition, m_netlist.names.text(call.nodes.back())) >= 0) {
    mistake.notes.push_back(
        {"parameters are given by name: '" + m_netlist.names.text(call.nodes.back()) + " name=" + call.target + "'",
         {}});
  }
}

void ElementReader::read_call_parameters(const Card& card, CardCursor& cursor, Call& call) {
  while (!cursor.at_end()) {
    const Place place = cursor.place();
    const std::string word(cursor.next());
    if (word == "params:") {
      continue;
    }
    if (!cursor.skip_equals()) {
      m_reporter.warning(
          "spice:ignored_word", place,
          "'" + word + "' is ignored; a parameter is written as name=value, without blanks in the value");
      continue;
    }
    const std::size_t offset = cursor.offset();
    const std::string_view text = cursor.next_value(false);
    if (is_enclosed(text) && text.front() == '"') {
      m_reporter.warning("spice:text_parameter", place, "parameter '" + word + "' is a text and is ignored");
      continue;
    }
    call.parameters.push_back({word, m_expressions.read(card, offset, text), place, false});
  }
}

}  // namespace kinemo::formats::spice
