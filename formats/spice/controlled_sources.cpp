// What stands behind the nodes on the cards of controlled sources.

#include <algorithm>
#include <array>

#include "formats/spice/element_reader.hpp"

namespace kinemo::formats::spice {

namespace {

constexpr std::size_t most_dimensions = 10'000;

constexpr std::array<std::string_view, 4> expression_words{"value", "vol", "cur", "table"};
/// Forms that the simulator's default mode has no place for, or that become digital parts.
constexpr std::array<std::string_view, 7> unsupported_forms{"laplace", "freq", "chebyshev", "and", "or", "nand", "nor"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

}  // namespace

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
    report_node_count(cursor, element, element.nodes.size(), "4");
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

}  // namespace kinemo::formats::spice
