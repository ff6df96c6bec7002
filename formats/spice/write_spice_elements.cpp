#include "formats/spice/write_spice_elements.hpp"

namespace kinemo::formats::spice {

namespace {

bool begins_with(const std::string& text, std::string_view word) {
  return text.compare(0, word.size(), word) == 0;
}

const char* unit_of(char letter) {
  switch (letter) {
    case 'r':
    case 'h':
      return "Ohm";
    case 'c':
      return "F";
    case 'l':
      return "H";
    case 'g':
      return "S";
    case 'v':
      return "V";
    case 'i':
      return "A";
    default:
      return "1";
  }
}

std::string joined(const std::vector<std::string>& words, std::size_t first = 0) {
  std::string text;
  for (std::size_t i = first; i < words.size(); ++i) {
    text += (text.empty() ? "" : " ") + words[i];
  }
  return text;
}

/// The text of a card behind its nodes.
std::string rest(const ElementWriter& element) {
  return element.circuit_text("text", "text_values");
}

/// The number 0 stands for a value that the card doesn't have.
std::string value_or_none(const ElementWriter& element, const ElementKind& kind) {
  return element.is_zero("value") ? std::string() : element.value("value", unit_of(kind.letter));
}

/// Without a model or an expression of the circuit, which begins with the element's letter, there must be a value.
void write_passive(const ElementWriter& element, const ElementKind& kind) {
  const std::string text = rest(element);
  const std::string model = element.model();
  const bool can_be_missing = !model.empty() || begins_with(text, std::string(1, kind.letter) + "=");
  const std::string value =
      can_be_missing ? value_or_none(element, kind) : element.value("value", unit_of(kind.letter));
  element.card({element.name(), joined(element.nodes()), value, model, text});
}

void write_source(const ElementWriter& element, const ElementKind& kind) {
  const std::string text = rest(element);
  const std::string value = text.empty() ? element.value("value", unit_of(kind.letter)) : value_or_none(element, kind);
  element.card({element.name(), joined(element.nodes()), value.empty() ? value : "dc " + value, text});
}

void write_modelled(const ElementWriter& element, const ElementKind& kind) {
  const std::string model = element.model();
  if (model.empty()) {
    element.problem("it has no model");
  }
  const std::string area = element.has("value") ? value_or_none(element, kind) : std::string();
  // without its name, the simulator takes an expression for the area of these as the name of a model
  const bool is_named = !area.empty() && (kind.letter == 'd' || kind.letter == 'q');
  element.card({element.name(), joined(element.nodes()), model, is_named ? "area=" + area : area, rest(element)});
}

/// The word that tells the dimensions of a polynomial stands between the nodes, in front of those that control.
std::string split_dimensions(std::string& text) {
  const std::size_t end = begins_with(text, "poly(") ? text.find(')') : std::string::npos;
  if (end == std::string::npos) {
    return {};
  }
  const std::string word = text.substr(0, end + 1);
  text.erase(0, text.find_first_not_of(' ', end + 1));
  return word;
}

void write_controlled(const ElementWriter& element, const ElementKind& kind) {
  std::string text = rest(element);
  std::vector<std::string> nodes = element.nodes();
  const std::string dimensions = split_dimensions(text);
  if (!dimensions.empty()) {
    element.card({element.name(), nodes[0], nodes[1], dimensions, joined(nodes, 2), text});
  } else if (nodes.size() == 2) {
    element.card({element.name(), joined(nodes), text});
  } else {
    element.card({element.name(), joined(nodes), element.value("value", unit_of(kind.letter)), text});
  }
}

void write_by_source(const ElementWriter& element, const ElementKind& kind) {
  std::string text = rest(element);
  const std::string dimensions = split_dimensions(text);
  const std::string gain = dimensions.empty() ? element.value("value", unit_of(kind.letter)) : std::string();
  element.card({element.name(), joined(element.nodes()), dimensions, element.elements(), gain, text});
}

}  // namespace

void write_spice_element(const ElementWriter& element, const ElementKind& kind) {
  switch (kind.shape) {
    case CardShape::passive:
      return write_passive(element, kind);
    case CardShape::coupling:
      return element.card({element.name(), element.elements(), element.value("value", unit_of(kind.letter))});
    case CardShape::source:
      return write_source(element, kind);
    case CardShape::modelled:
      return write_modelled(element, kind);
    case CardShape::controlled:
      return write_controlled(element, kind);
    case CardShape::by_source:
      return write_by_source(element, kind);
    case CardShape::by_switch:
      return element.card(
          {element.name(), joined(element.nodes()), element.elements(), element.model(), rest(element)});
    case CardShape::behavioral:
    case CardShape::parameters:
      return element.card({element.name(), joined(element.nodes()), rest(element)});
  }
}

}  // namespace kinemo::formats::spice
