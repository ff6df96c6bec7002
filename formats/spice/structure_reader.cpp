#include "formats/spice/structure_reader.hpp"

#include <algorithm>
#include <array>
#include <map>

namespace kinemo::formats::spice {

namespace {

/// Cards that tell the simulator what to do; they don't change the circuit.
constexpr std::array<std::string_view, 32> analysis_cards{
    ".ac", ".csparam", ".dc",     ".disto",   ".four", ".fourier", ".ic",    ".meas", ".measure", ".nodeset", ".noise",
    ".op", ".opt",     ".option", ".options", ".plot", ".print",   ".probe", ".pss",  ".pz",      ".save",    ".sens",
    ".sp", ".temp",    ".tf",     ".title",   ".tran", ".width",   ".four",  ".step", ".data",    ".enddata"};

constexpr std::array<std::string_view, 22> circuit_cards{
    ".macro", ".eom",   ".subckt", ".ends", ".model", ".param", ".params",  ".func",    ".global", ".if", ".elseif",
    ".else",  ".endif", ".end",    ".lib",  ".endl",  ".inc",   ".include", ".control", ".endc",   ".op", ".tran"};

/// The simulator takes lines for comments that begin so.
constexpr std::string_view comment_signs = "=[]?()&%$\"!:,;";

constexpr std::size_t deepest_definition = 1000;

class StructureReader {
 public:
  StructureReader(const CardList& cards, Netlist& netlist, DiagnosticList& diagnostics)
      : m_cards(cards), m_netlist(netlist), m_diagnostics(diagnostics) {}

  std::vector<DefinitionCards> read() {
    open_definition("", {});
    for (const Card& card : m_cards.cards) {
      read_card(card);
    }
    while (m_open.size() > 1) {
      error("spice:unbalanced", definition().place,
            "'.subckt " + definition().name + "' is never ended; '.ends' is missing");
      close_definition();
    }
    close_sections();
    note_kept_aside();
    return std::move(m_result);
  }

 private:
  /// A definition whose `.ends` hasn't come yet.
  struct Open {
    std::size_t index;
    std::vector<std::int32_t> sections;  ///< the branch we are in of each `.if` section that is open
  };

  Definition& definition() { return m_netlist.definitions[m_open.back().index]; }
  DefinitionCards& waiting() { return m_result[m_open.back().index]; }
  std::int32_t branch() const { return m_open.back().sections.empty() ? -1 : m_open.back().sections.back(); }

  Diagnostic& error(std::string rule, const Place& place, std::string text) {
    return m_diagnostics.error(std::move(rule), source_place(place), std::move(text));
  }
  Diagnostic& warning(std::string rule, const Place& place, std::string text) {
    return m_diagnostics.warning(std::move(rule), source_place(place), std::move(text));
  }

  void read_card(const Card& card) {
    const char first = card.text().front();
    if (first == '.') {
      read_directive(card);
    } else if (first >= 'a' && first <= 'z') {
      waiting().elements.push_back({&card, branch()});
    } else if (comment_signs.find(first) != std::string_view::npos) {
      warning("spice:odd_comment", card.place(),
              "a line that begins with '" + std::string(1, first) + "' is taken for a comment; valid is '*'");
    } else {
      error("spice:unknown_card", card.place(),
            "a statement begins with a letter or a dot, not with '" + std::string(first_character(card.text())) + "'");
    }
  }

  void read_directive(const Card& card) {
    CardCursor cursor(card);
    const std::string_view word = cursor.next();
    if (word == ".subckt" || word == ".macro") {
      begin_definition(card, cursor);
    } else if (word == ".ends" || word == ".eom") {
      end_definition(card, cursor);
    } else if (word == ".model") {
      read_model(card, cursor);
    } else if (word == ".param" || word == ".params") {
      warn_of_condition(card, word);
      read_parameters(card, cursor, false);
    } else if (word == ".func") {
      read_function(card, cursor);
    } else if (word == ".global") {
      read_globals(cursor);
    } else if (word == ".if" || word == ".elseif" || word == ".else" || word == ".endif") {
      read_condition(card, cursor, word);
    } else {
      keep_aside(card, word);
    }
  }

  // --- definitions

  void open_definition(std::string name, const Place& place) {
    const std::int32_t parent = m_open.empty() ? -1 : static_cast<std::int32_t>(m_open.back().index);
    m_open.push_back({m_netlist.definitions.size(), {}});
    m_result.emplace_back();
    Definition& added = m_netlist.definitions.emplace_back();
    added.name = std::move(name);
    added.parent = parent;
    added.place = place;
  }

  void begin_definition(const Card& card, CardCursor& cursor) {
    warn_of_condition(card, ".subckt");
    const Place place = cursor.place();
    const std::string name(cursor.next());
    if (name.empty()) {
      error("spice:bad_card", card.place(), "'.subckt' needs a name and its nodes");
    } else if (m_open.size() > deepest_definition) {
      error("spice:nesting", card.place(),
            "definitions are nested more than " + std::to_string(deepest_definition) + " levels deep");
    }
    register_definition(name, place);
    open_definition(name, place);
    read_formals(cursor);
    read_parameters(card, cursor, true);
  }

  void register_definition(const std::string& name, const Place& place) {
    const auto index = static_cast<std::int32_t>(m_netlist.definitions.size());
    const auto [entry, is_new] = definition().definitions.emplace(name, index);
    if (!is_new) {
      warning("spice:second_definition", place, "'" + name + "' is already defined; the first definition counts")
          .notes.push_back({"the first one is here",
                            source_place(m_netlist.definitions[static_cast<std::size_t>(entry->second)].place)});
    }
  }

  void read_formals(CardCursor& cursor) {
    std::set<NameId> seen;
    while (!cursor.at_end() && !cursor.at_assignment() && cursor.peek() != "params:") {
      const Place place = cursor.place();
      const NameId node = m_netlist.names.add(cursor.next());
      if (!seen.insert(node).second) {
        error("spice:formal_twice", place,
              "node '" + m_netlist.names.text(node) + "' stands twice among the nodes of '" + definition().name + "'");
      }
      definition().formals.push_back(node);
    }
  }

  void end_definition(const Card& card, CardCursor& cursor) {
    if (m_open.size() == 1) {
      error("spice:unbalanced", card.place(), "'.ends' without a '.subckt' before it");
      return;
    }
    const std::string_view name = cursor.next();
    if (!name.empty() && name != definition().name) {
      warning("spice:ends_name", card.place(), "'.ends " + std::string(name) + "' ends '" + definition().name + "'")
          .notes.push_back({"which begins here", source_place(definition().place)});
    }
    close_definition();
  }

  void close_definition() {
    close_sections();
    m_open.pop_back();
  }

  void close_sections() {
    for (const std::int32_t open : m_open.back().sections) {
      error("spice:unbalanced", definition().branches[static_cast<std::size_t>(open)].place,
            "this condition is never ended; '.endif' is missing");
    }
    m_open.back().sections.clear();
  }

  void warn_of_condition(const Card& card, std::string_view word) {
    if (branch() >= 0) {
      warning("spice:not_conditional", card.place(),
              "'" + std::string(word) + "' counts whether the condition around it is met or not");
    }
  }

  // --- parameters, functions, models, globals

  PendingExpression pending(const Card& card, std::string_view value) {
    return {&card, value.empty() ? card.text().size() : static_cast<std::size_t>(value.data() - card.text().data()),
            std::string(value)};
  }

  void read_parameters(const Card& card, CardCursor& cursor, bool formal) {
    while (!cursor.at_end()) {
      const Place place = cursor.place();
      const std::size_t begin = cursor.offset();
      const std::string name(cursor.next());
      const std::size_t open = begin + name.size();
      if (formal && name == "params:") {
        continue;
      }
      if (!formal && open < card.text().size() && card.text()[open] == '(') {
        read_function_at(card, name, open, cursor);
      } else if (!cursor.skip_equals()) {
        warning("spice:no_value", place, "parameter '" + name + "' has no value and is ignored");
      } else {
        add_parameter(card, place, name, cursor.next_value(true), formal);
      }
    }
  }

  void add_parameter(const Card& card, const Place& place, const std::string& name, std::string_view value,
                     bool formal) {
    if (value.empty()) {
      error("spice:bad_expression", place, "parameter '" + name + "' has no value");
    } else if (value.front() == '"') {
      warning("spice:text_parameter", place, "parameter '" + name + "' is a text and is ignored");
    } else {
      waiting().parameters.push_back({name, pending(card, value), formal});
    }
  }

  void read_function(const Card& card, CardCursor& cursor) {
    const std::size_t begin = cursor.offset();
    const std::string_view word = cursor.next();
    const std::size_t open = card.text().find('(', begin);
    if (word.empty() || open == std::string::npos ||
        !trimmed(std::string_view(card.text()).substr(begin + word.size(), open - begin - word.size())).empty()) {
      error("spice:bad_card", card.place(), "a function is written as '.func name(a, b) {expression}'");
      return;
    }
    read_function_at(card, std::string(word), open, cursor);
    cursor = CardCursor(card, card.text().size());
  }

  /// From the opening parenthesis at `open` to the end of the body.
  void read_function_at(const Card& card, const std::string& name, std::size_t open, CardCursor& cursor) {
    const std::size_t close = card.text().find(')', open);
    if (close == std::string::npos) {
      error("spice:bad_card", card.place(open), "'(' without its ')'");
      cursor = CardCursor(card, card.text().size());
      return;
    }
    PendingFunction function{name, {}, {}};
    const Card list(std::string_view(card.text()).substr(open + 1, close - open - 1), {});
    for (CardCursor names(list); !names.at_end();) {
      function.parameters.emplace_back(names.next());
    }
    cursor = CardCursor(card, close + 1);
    cursor.skip_equals();
    function.body = pending(card, cursor.next_value(true));
    if (function.body.text.empty()) {
      error("spice:bad_card", card.place(open), "function '" + name + "' has no body");
      return;
    }
    waiting().functions.push_back(std::move(function));
  }

  void read_model(const Card& card, CardCursor& cursor) {
    const std::string name(cursor.next());
    if (name.empty() || cursor.at_end()) {
      error("spice:bad_card", card.place(), "a model is written as '.model name type(parameters)'");
      return;
    }
    waiting().models.push_back({name, &card, cursor.offset()});
  }

  void read_globals(CardCursor& cursor) {
    while (!cursor.at_end()) {
      const NameId node = m_netlist.names.add(cursor.next());
      if (node != ground) {
        m_netlist.globals.insert(node);
      }
    }
  }

  // --- conditions

  void read_condition(const Card& card, CardCursor& cursor, std::string_view word) {
    std::vector<std::int32_t>& sections = m_open.back().sections;
    if (word == ".if") {
      if (sections.size() == deepest_definition) {
        error("spice:nesting", card.place(),
              "conditions are nested more than " + std::to_string(deepest_definition) + " levels deep");
      }
      add_branch(card, cursor, branch(), -1, true);
      sections.push_back(static_cast<std::int32_t>(definition().branches.size()) - 1);
      return;
    }
    if (sections.empty()) {
      error("spice:unbalanced", card.place(), "'" + std::string(word) + "' without an '.if' before it");
      return;
    }
    const std::int32_t before = sections.back();
    const bool after_else = waiting().conditions[static_cast<std::size_t>(before)].card == nullptr;
    if (word == ".endif") {
      sections.pop_back();
    } else if (after_else) {
      error("spice:unbalanced", card.place(), "'" + std::string(word) + "' behind the '.else' of its section");
    } else {
      const std::int32_t parent = definition().branches[static_cast<std::size_t>(before)].parent;
      add_branch(card, cursor, parent, before, word == ".elseif");
      sections.back() = static_cast<std::int32_t>(definition().branches.size()) - 1;
    }
  }

  void add_branch(const Card& card, const CardCursor& cursor, std::int32_t parent, std::int32_t previous,
                  bool has_condition) {
    definition().branches.push_back({parent, previous, nullptr, card.place()});
    waiting().conditions.push_back(has_condition ? pending(card, cursor.rest()) : PendingExpression{});
    if (has_condition && cursor.rest().empty()) {
      error("spice:bad_expression", card.place(), "the condition is missing");
    }
  }

  // --- what isn't the circuit

  void keep_aside(const Card& card, std::string_view word) {
    if (std::find(analysis_cards.begin(), analysis_cards.end(), word) != analysis_cards.end()) {
      m_kept_aside[std::string(word)].push_back(&card);
      return;
    }
    Diagnostic& found =
        warning("spice:unknown_directive", card.place(), "'" + std::string(word) + "' isn't known and is ignored");
    std::vector<std::string_view> names(circuit_cards.begin(), circuit_cards.end());
    names.insert(names.end(), analysis_cards.begin(), analysis_cards.end());
    const std::string nearest(nearest_name(word, names));
    if (!nearest.empty()) {
      found.notes.push_back({"did you mean '" + nearest + "'?", {}});
    }
  }

  void note_kept_aside() {
    for (const Card& card : m_cards.control_sections) {
      m_kept_aside[".control"].push_back(&card);
    }
    for (const auto& [word, cards] : m_kept_aside) {
      const std::string what = word == ".control" ? " (control section)" : " (analysis)";
      m_diagnostics.note("spice:kept_aside", source_place(cards.front()->place()),
                         "'" + word + "'" + what + " is not part of the circuit and is kept aside" +
                             (cards.size() > 1 ? ", " + std::to_string(cards.size()) + " times" : std::string()));
    }
  }

  const CardList& m_cards;
  Netlist& m_netlist;
  DiagnosticList& m_diagnostics;
  std::vector<DefinitionCards> m_result;
  std::vector<Open> m_open;
  std::map<std::string, std::vector<const Card*>> m_kept_aside;
};

}  // namespace

std::vector<DefinitionCards> read_structure(const CardList& cards, Netlist& netlist, DiagnosticList& diagnostics) {
  return StructureReader(cards, netlist, diagnostics).read();
}

}  // namespace kinemo::formats::spice
