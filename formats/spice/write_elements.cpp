#include "formats/spice/write_elements.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "formats/spice/element_kinds.hpp"
#include "formats/spice/write_spice_elements.hpp"
#include "formats/spice/write_text.hpp"
#include "formats/spice/write_values.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/units/units.hpp"

namespace kinemo::formats::spice {

using gl::core::Component;

// --- the lines of a level

void LevelText::card(const std::string& text) {
  lines += folded(text);
}

const std::string& ModelCards::add(const std::string& name, const std::string& card, LevelText& level) {
  const auto [entry, is_new] = m_names.try_emplace({kmf::lower(name), card});
  if (is_new) {
    entry->second = m_taken.make(legal_name(name));
  }
  const bool depends = card.find('{') != std::string::npos;
  const std::string line = ".model " + entry->second + " " + card;
  if (depends && level.models.insert(entry->second).second) {
    level.card(line);
  } else if (!depends && is_new) {
    m_lines += folded(line);
  }
  return entry->second;
}

// --- one component

ElementWriter::ElementWriter(WriteContext& context, LevelText& level, const kmf::VnId& id, const Component& component)
    : m_context(context), m_level(level), m_id(id), m_component(component) {}

std::vector<std::string> ElementWriter::nodes() const {
  std::vector<std::string> all;
  for (const kmf::VnId& connector : m_component.connectorOrder()) {
    all.push_back(m_level.nodes.at(m_id, connector));
  }
  return all;
}

std::string ElementWriter::new_node(const std::string& suffix) const {
  return m_level.nodes.make(name() + "_" + suffix);
}

std::string ElementWriter::new_element(char letter, const std::string& suffix) const {
  const bool leads = kmf::lower(name()).front() == letter;
  return m_level.elements.make((leads ? "" : std::string(1, letter)) + name() + "_" + suffix);
}

const ParameterVariant* ElementWriter::find(const char* parameter) const {
  const auto found = m_component.parameters().find(parameter);
  return found != m_component.parameters().end() ? &found->second.get(kmf::VnIdPathIterator()) : nullptr;
}

bool ElementWriter::has(const char* parameter) const {
  return find(parameter) != nullptr;
}

std::optional<double> ElementWriter::constant(const char* parameter) const {
  const ParameterVariant* value = find(parameter);
  const auto* number = value != nullptr ? boost::get<data2::core::Value>(value) : nullptr;
  const bool is_number = number != nullptr && number->data().isScalar();
  return is_number ? std::optional(number->data().elements().front()) : std::nullopt;
}

bool ElementWriter::is_infinite(const char* parameter) const {
  const std::optional<double> value = constant(parameter);
  return value && std::isinf(*value);
}

std::optional<WrittenExpression> ElementWriter::written(const char* parameter, const char* unit) const {
  const ParameterVariant* value = find(parameter);
  std::string reason = "it isn't there";
  const ParameterNameLookup names = [this](const std::string& name, std::string& problem) {
    return m_context.parameters.find(name, problem);
  };
  auto result = value != nullptr ? write_value(*value, units2::core::parse(unit), names, reason)
                                 : std::optional<WrittenExpression>();
  if (!result) {
    problem("the parameter '" + std::string(parameter) + "' can't be written: " + reason);
  }
  return result;
}

std::string ElementWriter::value(const char* parameter, const char* unit) const {
  const auto result = written(parameter, unit);
  return result ? card_value(*result) : std::string();
}

std::string ElementWriter::operand(const char* parameter, const char* unit) const {
  const auto result = written(parameter, unit);
  return result ? "(" + result->text + ")" : std::string();
}

std::string ElementWriter::plain_text(const char* parameter) const {
  const ParameterVariant* value = find(parameter);
  const auto* text = value != nullptr ? boost::get<ustring>(value) : nullptr;
  return text != nullptr ? kmf::ustring_to_utf8_string(*text) : std::string();
}

std::string ElementWriter::text(const char* parameter, const char* values) const {
  const std::string plain = plain_text(parameter);
  const ParameterVariant* row = find(values);
  if (row == nullptr || plain.find('{') == std::string::npos) {
    return plain;
  }
  std::string reason;
  const ParameterNameLookup names = [this](const std::string& name, std::string& why) {
    return m_context.parameters.find(name, why);
  };
  const auto written = write_row(*row, names, reason);
  if (!written) {
    problem("the parameter '" + std::string(values) + "' can't be written: " + reason);
    return plain;
  }
  const auto filled = with_values(plain, *written);
  if (!filled) {
    problem("the parameter '" + std::string(parameter) + "' names a value that '" + values + "' doesn't have; it has " +
            std::to_string(written->size()));
  }
  return filled.value_or(plain);
}

/// A node that the level doesn't have is one of the whole netlist, where the top has it.
std::optional<std::string> ElementWriter::node_in_text(const std::string& name) const {
  auto found = m_level.nodes.find(name);
  if (found || names_ground(name) || m_context.top == nullptr || name.find('.') != std::string::npos) {
    return found;
  }
  found = m_context.top->find(name);
  if (found && *found != "0") {
    m_context.global_nodes.insert(*found);
  }
  return found;
}

std::string ElementWriter::circuit_text(const char* parameter, const char* values) const {
  return with_circuit_names(
      text(parameter, values), [this](const std::string& name) { return node_in_text(name); },
      [this](const std::string& name) { return m_level.elements.find(name); });
}

std::string ElementWriter::elements() const {
  const std::string names = plain_text("elements");
  std::string result;
  for (std::size_t at = 0; at < names.size();) {
    const std::size_t end = std::min(names.find(' ', at), names.size());
    const std::string name = names.substr(at, end - at);
    if (!name.empty()) {
      result += (result.empty() ? "" : " ") + m_level.elements.find(name).value_or(name);
    }
    at = end + 1;
  }
  return result;
}

std::string ElementWriter::model() const {
  const std::string name = plain_text("model");
  const std::string card = text("model_card", "model_values");
  if (!name.empty() && card.empty()) {
    problem("the model '" + name + "' has no card; 'model_card' tells its type and parameters");
  }
  check_model(name, card);
  return name.empty() ? name : model(name, card);
}

/// Cards whose lines matter, and models that are one of several by the element's size, aren't in the graph as a whole.
void ElementWriter::check_model(const std::string& name, const std::string& card) const {
  const std::string text = kmf::lower(card);
  for (const char* type : {"numd", "nbjt", "numos"}) {
    if (text.compare(0, std::strlen(type), type) == 0) {
      report("spice:numerical_model", "the numerical device model '" + name + "' can't be written");
    }
  }
  const std::size_t dot = name.rfind('.');
  const bool has_number = dot != std::string::npos && dot + 1 < name.size() &&
                          name.find_first_not_of("0123456789", dot + 1) == std::string::npos;
  if (has_number && text.find("lmin") != std::string::npos) {
    report("spice:binned_model", "the model '" + name + "' is one of several by size, and the others aren't known");
  }
}

void ElementWriter::card(std::initializer_list<std::string> words) const {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() || word.empty() ? "" : " ") + word;
  }
  m_level.card(text);
}

Diagnostic& ElementWriter::problem(const std::string& text) const {
  return report("spice:not_written", text);
}

Diagnostic& ElementWriter::report(const char* rule, const std::string& text) const {
  const std::string object = block_path(m_component);
  Diagnostic& diagnostic =
      m_context.diagnostics.error(rule, m_context.source.place(m_component), "block '" + object + "': " + text);
  diagnostic.notes.push_back({"in " + object, {}});
  return diagnostic;
}

// --- all kinds

namespace {

const ElementKind* find_spice_kind(const Component& component) {
  std::string block(component.type());
  std::replace(block.begin(), block.end(), '.', '/');
  const auto found = std::find_if(element_kinds.begin(), element_kinds.end(),
                                  [&block](const ElementKind& kind) { return kind.block == block; });
  return found != element_kinds.end() ? &*found : nullptr;
}

}  // namespace

char element_letter(const Component& component) {
  if (component.isSubgraph()) {
    return 'x';
  }
  if (const ElementKind* kind = find_spice_kind(component)) {
    return kind->letter;
  }
  const WrittenKind* kind = find_electrical_kind(std::string(component.type()));
  return kind != nullptr ? kind->letter : '\0';
}

void write_element(WriteContext& context, LevelText& level, const kmf::VnId& id, const Component& component) {
  const ElementWriter element(context, level, id, component);
  if (const ElementKind* kind = find_spice_kind(component)) {
    write_spice_element(element, *kind);
  } else if (const WrittenKind* other = find_electrical_kind(element.type())) {
    other->write(element);
  } else if (!is_reference(component)) {
    Diagnostic& refused = element.problem("the type " + element.type() + " has no counterpart in a netlist");
    if (!context.has_told_kinds) {
      refused.notes.push_back({"written are blocks of physical/: spice/..., " + electrical_kind_names(), {}});
    }
    context.has_told_kinds = true;
  }
}

}  // namespace kinemo::formats::spice
