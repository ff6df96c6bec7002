#include "formats/spice/multipliers.hpp"

#include <algorithm>

namespace kinemo::formats::spice {

namespace {

constexpr char multiplier_name[] = "m";
/// Letters of elements that take `m=` from a call. Others stay as they are: sources of voltage can't be multiplied, and
/// the simulator leaves out lines, switches and behavioural sources.
constexpr std::string_view multiplied_letters = "cdfgijlmqrz";

bool is_multiplier(const Parameter& parameter) {
  return parameter.name == multiplier_name;
}

bool has_multiplier(const std::vector<Parameter>& parameters) {
  return std::any_of(parameters.begin(), parameters.end(), is_multiplier);
}

bool has_multiplier(const TextPieces& text) {
  return std::any_of(text.begin(), text.end(), [](const TextPiece& piece) {
    const Card card(piece.expression == nullptr ? piece.literal : std::string(), {});
    for (CardCursor cursor(card); !cursor.at_end(); cursor.next()) {
      if (cursor.at_assignment() && cursor.peek() == multiplier_name) {
        return true;
      }
    }
    return false;
  });
}

/// The simulator makes other elements of these, and sees to `m=` in its own ways.
bool is_behavioral(const Element& element) {
  return std::any_of(element.text.begin(), element.text.end(), [](const TextPiece& piece) {
    return piece.expression != nullptr && piece.expression->has_probes();
  });
}

bool is_polynomial(const Element& element) {
  return !element.text.empty() && element.text.front().literal.compare(0, 5, "poly(") == 0;
}

SharedExpression multiplier() {
  static const auto expression =
      std::make_shared<const Expression>(std::vector<ExpressionStep>{{Operation::name, 0, 0, multiplier_name, 0}});
  return expression;
}

SharedExpression multiplied(const Expression& expression) {
  std::vector<ExpressionStep> steps = expression.steps();
  steps.push_back(multiplier()->steps().front());
  steps.push_back({Operation::multiply, 2, 0, {}, 0});
  return std::make_shared<const Expression>(std::move(steps));
}

class MultiplierSpreader {
 public:
  MultiplierSpreader(Netlist& netlist, Reporter& reporter)
      : m_netlist(netlist), m_reporter(reporter), m_seen(netlist.definitions.size(), 0) {}

  void spread() {
    for (const Definition& definition : m_netlist.definitions) {
      for (const Call& call : definition.calls) {
        if (definition.used && has_multiplier(call.parameters)) {
          add(call.definition);
        }
      }
    }
    while (!m_waiting.empty()) {
      Definition& definition = *m_waiting.back();
      m_waiting.pop_back();
      multiply(definition);
    }
  }

 private:
  void add(std::int32_t index) {
    if (index < 0 || m_seen[static_cast<std::size_t>(index)] != 0) {
      return;
    }
    m_seen[static_cast<std::size_t>(index)] = 1;
    Definition& definition = m_netlist.definitions[static_cast<std::size_t>(index)];
    if (!has_multiplier(definition.parameters)) {
      m_waiting.push_back(&definition);
    }
  }

  void multiply(Definition& definition) {
    const auto one = std::make_shared<const Expression>(Expression::of_number(1));
    definition.parameters.insert(definition.parameters.begin(), {multiplier_name, one, definition.place, true});
    for (Element& element : definition.elements) {
      multiply(element, definition);
    }
    for (Call& call : definition.calls) {
      multiply(call, definition);
    }
  }

  void multiply(Call& call, const Definition& definition) {
    if (has_multiplier(call.parameters)) {
      report_replaced(call.place, "'" + m_netlist.names.text(call.name) + "'", definition);
    }
    call.parameters.push_back({multiplier_name, multiplier(), call.place, false});
    add(call.definition);
  }

  void multiply(Element& element, const Definition& definition) {
    const char letter = element.kind->letter;
    const std::string shown_name = "element '" + m_netlist.names.text(element.name) + "'";
    if (multiplied_letters.find(letter) == std::string_view::npos) {
      return;
    }
    if (is_polynomial(element)) {
      m_reporter.warning("spice:not_multiplied", element.place,
                         shown_name + ": a POLY form can't be multiplied by the m= of calls of '" + definition.name +
                             "'; the simulator refuses it");
      return;
    }
    if (has_multiplier(element.text) && !is_behavioral(element)) {
      report_replaced(element.place, shown_name, definition);
    }
    if (letter == 'g' && element.value != nullptr) {  // whose card has no place for it
      element.value = multiplied(*element.value);
      return;
    }
    element.text.push_back({element.text.empty() ? "m=" : " m=", nullptr});
    element.text.push_back({"{m}", multiplier()});
  }

  void report_replaced(const Place& place, const std::string& what, const Definition& definition) {
    m_reporter.warning("spice:replaced_multiplier", place,
                       "the m= of " + what + " has no effect: the m= of calls of '" + definition.name +
                           "' replaces it, also where they give none");
  }

  Netlist& m_netlist;
  Reporter& m_reporter;
  std::vector<char> m_seen;
  std::vector<Definition*> m_waiting;
};

}  // namespace

void spread_multipliers(Netlist& netlist, Reporter& reporter) {
  MultiplierSpreader(netlist, reporter).spread();
}

}  // namespace kinemo::formats::spice
