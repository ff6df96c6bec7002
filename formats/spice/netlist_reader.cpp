#include "formats/spice/netlist_reader.hpp"

#include "formats/spice/card_reader.hpp"
#include "formats/spice/element_reader.hpp"
#include "formats/spice/multipliers.hpp"
#include "formats/spice/netlist_checks.hpp"
#include "formats/spice/parameter_order.hpp"
#include "formats/spice/structure_reader.hpp"

namespace kinemo::formats::spice {

namespace {

/// The second look: everything that may name what comes later in the files.
class DefinitionReader {
 public:
  DefinitionReader(Netlist& netlist, const std::vector<DefinitionCards>& cards, Reporter& reporter)
      : m_netlist(netlist), m_cards(cards), m_reporter(reporter) {}

  void read_all() {
    for_each(&DefinitionReader::read_functions);
    for_each(&DefinitionReader::read_models);
    read_used();
    m_reporter.set_used(false);
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
      if (!m_netlist.definitions[index].used) {
        read_contents(index);
      }
    }
    m_reporter.set_used(true);
  }

 private:
  void for_each(void (DefinitionReader::*step)(std::size_t)) {
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
      (this->*step)(index);
    }
  }

  void read_functions(std::size_t index) {
    Definition& definition = m_netlist.definitions[index];
    for (const PendingFunction& pending : m_cards[index].functions) {
      ExpressionError error;
      const std::string_view text = pending.body.text;
      const auto body = parse_expression(enclosed_text(text), error);
      if (!body) {
        m_reporter.mistake("spice:bad_expression", pending.body.card->place(pending.body.offset + error.offset),
                           error.text);
        continue;
      }
      definition.functions[pending.name] = {pending.parameters, std::make_shared<const Expression>(*body)};
    }
  }

  void read_models(std::size_t index) {
    Definition& definition = m_netlist.definitions[index];
    ExpressionReader expressions(m_netlist, definition, m_reporter);
    for (const PendingModel& pending : m_cards[index].models) {
      const std::string_view text = std::string_view(pending.card->text()).substr(pending.offset);
      definition.models.emplace(
          pending.name, Model{pending.name, expressions.pieces(text, false), pending.card->place(), &definition});
    }
  }

  /// The top level and whatever it calls, through all levels.
  void read_used() {
    std::vector<std::size_t> waiting{0};
    m_netlist.definitions[0].used = true;
    while (!waiting.empty()) {
      const std::size_t index = waiting.back();
      waiting.pop_back();
      read_contents(index);
      for (const Call& call : m_netlist.definitions[index].calls) {
        if (call.definition >= 0 && !m_netlist.definitions[static_cast<std::size_t>(call.definition)].used) {
          m_netlist.definitions[static_cast<std::size_t>(call.definition)].used = true;
          waiting.push_back(static_cast<std::size_t>(call.definition));
        }
      }
    }
  }

  void read_contents(std::size_t index) {
    Definition& definition = m_netlist.definitions[index];
    ExpressionReader expressions(m_netlist, definition, m_reporter);
    read_parameters(index, expressions);
    for (std::size_t i = 0; i < definition.branches.size(); ++i) {
      const PendingExpression& condition = m_cards[index].conditions[i];
      if (condition.card != nullptr && !condition.text.empty()) {
        definition.branches[i].condition = expressions.read(*condition.card, condition.offset, condition.text);
      }
    }
    ElementReader elements(m_netlist, definition, m_reporter);
    for (const ElementCard& card : m_cards[index].elements) {
      elements.read(*card.card, card.branch);
    }
  }

  /// The last parameter of a name counts; one that stands on the `.subckt` card as well can still be given in a call.
  void read_parameters(std::size_t index, ExpressionReader& expressions) {
    Definition& definition = m_netlist.definitions[index];
    std::map<std::string, std::size_t> places;
    for (const PendingParameter& pending : m_cards[index].parameters) {
      Parameter parameter{pending.name, expressions.read(*pending.value.card, pending.value.offset, pending.value.text),
                          pending.value.card->place(pending.value.offset), pending.formal};
      const auto [entry, is_new] = places.emplace(pending.name, definition.parameters.size());
      if (is_new) {
        definition.parameters.push_back(std::move(parameter));
      } else {
        parameter.formal = parameter.formal || definition.parameters[entry->second].formal;
        definition.parameters[entry->second] = std::move(parameter);
      }
    }
    order_parameters(definition, index == 0, m_reporter);
  }

  Netlist& m_netlist;
  const std::vector<DefinitionCards>& m_cards;
  Reporter& m_reporter;
};

}  // namespace

Netlist read_cards_and_resolve(const std::shared_ptr<const TextFile>& top, DiagnosticList& diagnostics) {
  CardList cards = read_cards(top, diagnostics);
  Netlist netlist;
  netlist.title = cards.title;
  const std::vector<DefinitionCards> waiting = read_structure(cards, netlist, diagnostics);
  Reporter reporter(diagnostics);
  DefinitionReader(netlist, waiting, reporter).read_all();
  netlist.files = std::move(cards.files);
  check_netlist(netlist, reporter);
  spread_multipliers(netlist, reporter);
  return netlist;
}

}  // namespace kinemo::formats::spice
