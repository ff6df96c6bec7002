#include "formats/spice/call_reader.hpp"

#include "formats/spice/model_lookup.hpp"

namespace kinemo::formats::spice {

CallReader::CallReader(Netlist& netlist, Definition& definition, Reporter& reporter)
    : m_netlist(netlist),
      m_definition(definition),
      m_reporter(reporter),
      m_expressions(netlist, definition, reporter) {}

void CallReader::read(const Card& card, std::int32_t branch) {
  CardCursor cursor(card);
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
  read_parameters(card, cursor, call);
  m_definition.calls.push_back(std::move(call));
}

void CallReader::resolve(Call& call, const Place& target) {
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

void CallReader::read_parameters(const Card& card, CardCursor& cursor, Call& call) {
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
