#include "formats/spice/element_reader.hpp"

#include <algorithm>
#include <cctype>

#include "formats/spice/call_reader.hpp"
#include "formats/spice/model_lookup.hpp"

namespace kinemo::formats::spice {

namespace {

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

/// Nodes before the model; only one kind of MOS transistor has no bulk.
std::size_t least_nodes(const ElementKind& kind, const Model* model) {
  const bool has_bulk = kind.letter == 'm' && (model == nullptr || model->card.empty() ||
                                               model->card.front().literal.compare(0, 5, "vdmos") != 0);
  return has_bulk ? 4 : kind.min_nodes;
}

}  // namespace

ElementReader::ElementReader(Netlist& netlist, Definition& definition, Reporter& reporter)
    : m_netlist(netlist),
      m_definition(definition),
      m_reporter(reporter),
      m_expressions(netlist, definition, reporter) {}

void ElementReader::read(const Card& card, std::int32_t branch) {
  const std::size_t errors = m_reporter.list().error_count();
  read_card(card, branch);
  if (m_reporter.list().error_count() != errors) {
    m_netlist.faulty_cards.push_back({card.place(), card.place(card.text().size() - 1).line});
  }
}

void ElementReader::read_card(const Card& card, std::int32_t branch) {
  CardCursor cursor(card);
  const std::size_t errors = m_reporter.list().error_count();
  const char letter = card.text().front();
  if (letter == 'x') {
    CallReader(m_netlist, m_definition, m_reporter).read(card, branch);
    return;
  }
  Element element;
  element.kind = find_element_kind(letter);
  element.name = m_netlist.names.add(cursor.next());
  element.branch = branch;
  element.place = card.place();
  if (element.kind == nullptr) {
    report_unsupported(element, letter);
  } else {
    read_element(cursor, element);
  }
  keep(std::move(element), errors);
}

void ElementReader::report_unsupported(const Element& element, char letter) {
  m_reporter
      .mistake("spice:unsupported_element", element.place,
               "element '" + name(element) + "': elements with the letter '" +
                   std::string(1, static_cast<char>(std::toupper(letter))) + "' are not supported")
      .notes.push_back({"supported are " + supported_letters(), {}});
}

void ElementReader::keep(Element element, std::size_t errors_before) {
  if (m_reporter.list().error_count() != errors_before) {
    m_definition.faulty.push_back(
        {element.name, element.branch, element.kind, std::move(element.nodes), element.place});
  } else if (element.kind != nullptr) {
    m_definition.elements.push_back(std::move(element));
  }
}

void ElementReader::read_element(CardCursor& cursor, Element& element) {
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

void ElementReader::report_node_count(const CardCursor& cursor, const Element& element, std::size_t found,
                                      const std::string& needed) {
  Diagnostic& mistake = m_reporter.mistake(
      "spice:node_count", element.place,
      "element '" + name(element) + "' has " + std::to_string(found) + " node(s) and needs " + needed);
  if (cursor.card().cut_at_dollar()) {
    mistake.notes.push_back({"a '$' behind a blank or comma begins a comment, so no name can begin with it", {}});
  }
}

bool ElementReader::read_nodes(CardCursor& cursor, Element& element, std::size_t count) {
  const std::size_t needed = element.nodes.size() + count;
  while (element.nodes.size() < needed) {
    if (cursor.at_end() || cursor.at_assignment()) {
      report_node_count(cursor, element, element.nodes.size(), std::to_string(needed));
      return false;
    }
    element.nodes.push_back(m_netlist.names.add(cursor.next()));
  }
  return true;
}

/// Reads up to the model's name, which the cursor then stands behind. A node may have the name of a model as well.
bool ElementReader::read_nodes_to_model(CardCursor& cursor, Element& element) {
  std::vector<std::pair<std::string_view, Place>> words;
  std::size_t nodes_too_few = 0;  // before the first model that comes too early
  while (words.size() <= element.kind->max_nodes && !cursor.at_end() && !cursor.at_assignment()) {
    const Place place = cursor.place();
    words.emplace_back(cursor.next(), place);
    const std::size_t nodes = words.size() - 1;
    const Model* model = nodes < std::min<std::size_t>(2, element.kind->min_nodes)
                             ? nullptr
                             : find_model(m_netlist, m_definition, std::string(words.back().first));
    if (model == nullptr) {
      continue;
    }
    if (nodes < least_nodes(*element.kind, model)) {
      nodes_too_few = nodes_too_few == 0 ? nodes : nodes_too_few;
      continue;
    }
    element.model = model;
    for (std::size_t i = 0; i < nodes; ++i) {
      element.nodes.push_back(m_netlist.names.add(words[i].first));
    }
    return true;
  }
  for (std::size_t i = 0; i < std::min<std::size_t>(words.size(), element.kind->min_nodes); ++i) {
    element.nodes.push_back(m_netlist.names.add(words[i].first));
  }
  if (nodes_too_few != 0 || words.size() <= element.kind->min_nodes) {
    report_node_count(cursor, element,
                      nodes_too_few != 0 ? nodes_too_few
                      : words.empty()    ? 0
                                         : words.size() - 1,
                      node_count_text(*element.kind));
  } else {
    const auto& [word, place] = words[std::min(words.size() - 1, least_nodes(*element.kind, nullptr))];
    report_unknown_model(element, word, place);
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

}  // namespace kinemo::formats::spice
