#include "formats/spice/element_parameters.hpp"

#include "embedded/block_diagram/diagram.hpp"

namespace kinemo::formats::spice {

namespace {

namespace host = embedded::block_diagram;

ustring host_string(std::string_view text) {
  return kmf::utf8_string_to_ustring(std::string(text));
}

bool has_value(const Element& element, const ParameterScopes& scopes) {
  ExpressionError error;
  const ValueLookup values = [&scopes](const std::string& name) { return scopes.value(name); };
  return evaluate(*element.value, values, error).has_value();
}

/// A value that waits for the running circuit is a text, before what the card has as a text.
TextPieces with_value(const Element& element) {
  TextPieces pieces;
  if (element.kind->shape == CardShape::passive) {
    pieces.push_back({std::string(1, element.kind->letter) + "=", nullptr});
  }
  pieces.push_back({"{" + netlist_text(*element.value, {}) + "}", element.value});
  if (!element.text.empty()) {
    pieces.push_back({" ", nullptr});
    pieces.insert(pieces.end(), element.text.begin(), element.text.end());
  }
  return pieces;
}

}  // namespace

ElementParameters::ElementParameters(const NameTable& node_names, const HostNames& names, Reporter& reporter)
    : m_node_names(node_names), m_names(names), m_reporter(reporter) {}

void ElementParameters::begin(const Definition& definition) {
  m_open[&definition].push_back(m_instances.size());
  m_instances.push_back({&definition, {}});
}

void ElementParameters::end() {
  m_open[m_instances.back().definition].pop_back();
  m_instances.pop_back();
}

void ElementParameters::set(GTBlock& block, const Element& element, const ParameterScopes& scopes) {
  const bool is_counted = element.kind->parameters.find("terminals") != std::string_view::npos;
  if (is_counted) {
    host::setParameter(block, "terminals", host_string(std::to_string(element.nodes.size())));
  }
  const bool waits = element.value != nullptr && !has_value(element, scopes);
  if (element.value != nullptr && !waits) {
    set_value(block, element, scopes);
  }
  if (element.model != nullptr) {
    host::setParameter(block, "model", host_string(element.model->name));
    set_text(block, "model_card", "model_values", element, card(*element.model, scopes));
  }
  if (is_counted || element.model != nullptr) {
    host::refresh(block);  // brings the ports, and the icon of the device
  }
  if (!element.elements.empty()) {
    host::setParameter(block, "elements", host_string(element.elements));
  }
  if (waits || !element.text.empty()) {
    const std::size_t here = m_instances.size() - 1;
    set_text(block, "text", "text_values", element,
             host_text(live_text(waits ? with_value(element) : element.text, scopes, here, here)));
  }
}

void ElementParameters::set_value(GTBlock& block, const Element& element, const ParameterScopes& scopes) {
  const std::size_t here = m_instances.size() - 1;
  LiveExpressions expressions(scopes, here, here);
  const Expression value = expressions.tell(*element.value);
  host::setParameter(block, "value", host_string(m_names.expression(value)));
  if (value.has_names()) {
    host::setParameter(block, "value_conf", u"runtime");
  }
  if (expressions.has_fixed()) {
    note_fixed(element.place, element_name(element));
  }
}

void ElementParameters::set_text(GTBlock& block, const char* parameter, const char* row, const Element& element,
                                 const HostText& text) {
  host::setParameter(block, parameter, text.text);
  if (!text.row.empty()) {
    host::setParameter(block, row, text.row);
    host::setParameter(block, std::string(row) + "_conf", u"runtime");
  }
  if (text.live.has_fixed) {
    note_fixed(element.place, element_name(element));
  }
}

ElementParameters::HostText ElementParameters::host_text(LiveText live) const {
  std::string values;
  for (const Expression& value : live.values) {
    values += (values.empty() ? "" : ", ") + m_names.expression(value);
  }
  ustring text = host_string(live.text);
  return {std::move(live), std::move(text), values.empty() ? ustring() : host_string("[" + values + "]")};
}

/// A card is told once in the instance where its model stands, and again only further in where other parameters hide
/// those that it names.
const ElementParameters::HostText& ElementParameters::card(const Model& model, const ParameterScopes& scopes) {
  const std::size_t home = m_open[model.definition].back();
  const std::size_t here = m_instances.size() - 1;
  auto [own, is_new] = m_instances[home].cards.try_emplace(&model);
  if (is_new) {
    own->second = host_text(live_text(model.card, scopes, home, home));
  }
  if (means_the_same(own->second.live, scopes, home, here)) {
    return own->second;
  }
  auto [told, is_first] = m_instances[here].cards.try_emplace(&model);
  if (is_first) {
    told->second = host_text(live_text(model.card, scopes, home, here));
  }
  return told->second;
}

void ElementParameters::note_fixed(const Place& place, const std::string& what) {
  if (m_noted.insert({place.file, place.line, place.column}).second) {
    m_reporter.note("spice:fixed_parameter", place,
                    "a parameter that " + what + " needs doesn't follow those that it is computed from: " +
                        "they are hidden here by others of their names, or it gets too long in terms of them");
  }
}

std::string ElementParameters::element_name(const Element& element) const {
  return "element '" + m_node_names.text(element.name) + "'";
}

}  // namespace kinemo::formats::spice
