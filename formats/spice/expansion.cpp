#include "formats/spice/expansion.hpp"

#include <tuple>

#include "formats/spice/live_expressions.hpp"

namespace kinemo::formats::spice {

namespace {

ValueLookup lookup_in(const ParameterScopes& scopes) {
  return [&scopes](const std::string& name) { return scopes.value(name); };
}

/// What a parameter stands for.
struct Meaning {
  std::optional<double> value;
  SharedExpression told;
};

class Expander {
 public:
  Expander(const Netlist& netlist, ExpansionVisitor& visitor, Reporter& reporter)
      : m_netlist(netlist), m_visitor(visitor), m_reporter(reporter) {}

  void run() {
    begin(m_netlist.top(), nullptr);
    while (!m_path.empty()) {
      Instance& instance = m_path.back();
      if (instance.next_call == instance.definition->calls.size()) {
        m_visitor.end(instance);
        leave();
        continue;
      }
      const Call& call = instance.definition->calls[instance.next_call++];
      if (is_active(instance, call.branch) && call.definition >= 0) {
        begin(m_netlist.definitions[static_cast<std::size_t>(call.definition)], &call);
      }
    }
  }

 private:
  static bool is_active(const Instance& instance, std::int32_t branch) {
    return branch < 0 || instance.branches[static_cast<std::size_t>(branch)] != 0;
  }

  void leave() {
    m_path.pop_back();
    m_scopes.close();
  }

  void begin(const Definition& definition, const Call* call) {
    define_parameters(definition, call);
    m_path.push_back({&definition, call, {}, 0});
    decide_branches(m_path.back());
    check_twins(m_path.back());
    if (!m_visitor.begin(m_path.back(), m_scopes)) {
      leave();
      return;
    }
    for (const Element& element : definition.elements) {
      if (is_active(m_path.back(), element.branch)) {
        value_of(element.value, element.place);
        m_visitor.element(element, m_scopes);
      }
    }
  }

  /// Opens the scope of an instance.
  void define_parameters(const Definition& definition, const Call* call) {
    std::map<std::string, Meaning> given;
    if (call != nullptr) {
      for (const Parameter& parameter : call->parameters) {
        given[parameter.name] = {value_of(parameter.value, parameter.place), parameter.value};
      }
    }
    m_scopes.open();
    for (const Parameter& parameter : definition.parameters) {
      const auto found = given.find(parameter.name);
      const Meaning meaning = found != given.end() ? found->second : own_meaning(parameter, call == nullptr);
      m_scopes.define(parameter.name, meaning.value, meaning.told);
    }
  }

  /// Of a parameter that a definition gives itself, in the terms of the scope around. At the top level, what is
  /// constant or gets too long stands for itself.
  Meaning own_meaning(const Parameter& parameter, bool is_top) {
    const std::optional<double> value = value_of(parameter.value, parameter.place);
    if (parameter.value == nullptr || (is_top && !parameter.value->has_names() && value)) {
      return {value, nullptr};
    }
    const std::size_t depth = m_scopes.depth() - 1;
    const NameLookup siblings = [this, depth](const std::string& name) -> const Expression* {
      const ScopedParameter* sibling = m_scopes.find(name, depth);
      return sibling == nullptr || sibling->depth != depth ? nullptr : sibling->told.get();
    };
    auto told = with_names(*parameter.value, siblings, longest_growth);
    if (!told) {
      report_fixed(parameter);
      return {value, is_top ? nullptr : std::make_shared<const Expression>(Expression::of_number(value.value_or(0)))};
    }
    return {value, std::make_shared<const Expression>(std::move(*told))};
  }

  void report_fixed(const Parameter& parameter) {
    if (m_reported.insert({parameter.place.file, parameter.place.line, parameter.place.column}).second) {
      m_reporter.note("spice:fixed_parameter", parameter.place,
                      "parameter '" + parameter.name +
                          "' doesn't follow those that it is computed from: in terms of them it gets too long");
    }
  }

  std::optional<double> value_of(const SharedExpression& expression, const Place& place) {
    if (expression == nullptr) {
      return std::nullopt;
    }
    ExpressionError error;
    const auto value = evaluate(*expression, lookup_in(m_scopes), error);
    if (!value && !waits_for_circuit(*expression)) {
      report(place, error);
    }
    return value;
  }

  /// Whether all that is missing for a value are quantities of the running circuit, here or in the parameters that it
  /// needs, or values whose lack was reported before.
  bool waits_for_circuit(const Expression& expression) const {
    bool waits = false;
    for (const ExpressionStep& step : expression.steps()) {
      const bool is_name = step.operation == Operation::name;
      if (is_name && !m_scopes.knows(step.text)) {
        return false;
      }
      waits = waits || step.operation == Operation::probe || (is_name && !m_scopes.value(step.text));
    }
    return waits;
  }

  /// A place is reported once, in however many instances it is.
  void report(const Place& place, const ExpressionError& error) {
    if (m_reported.insert({place.file, place.line, place.column}).second) {
      m_reporter.mistake("spice:no_value", place, error.text);
    }
  }

  void decide_branches(Instance& instance) {
    const std::vector<Branch>& branches = instance.definition->branches;
    instance.branches.assign(branches.size(), 0);
    std::vector<char> settled(branches.size(), 0);  // it or a branch before it in its section is taken
    for (std::size_t i = 0; i < branches.size(); ++i) {
      const Branch& branch = branches[i];
      if (branch.condition != nullptr && branch.condition->has_probes()) {
        report(branch.place, {"a condition can't depend on the running circuit", 0});
      }
      const bool is_open = is_active(instance, branch.parent) &&
                           (branch.previous < 0 || settled[static_cast<std::size_t>(branch.previous)] == 0);
      instance.branches[i] =
          is_open && (branch.condition == nullptr || value_of(branch.condition, branch.place).value_or(0) != 0) ? 1 : 0;
      settled[i] = !is_open || instance.branches[i] != 0 ? 1 : 0;
    }
  }

  /// Elements of one name in branches that exclude each other are fine; here all values are known.
  void check_twins(const Instance& instance) {
    if (instance.branches.empty()) {
      return;
    }
    std::unordered_map<NameId, const Place*> seen;
    const auto check = [&](NameId name, std::int32_t branch, const Place& place) {
      if (!is_active(instance, branch)) {
        return;
      }
      const auto [other, is_new] = seen.emplace(name, &place);
      if (!is_new && m_reported.insert({place.file, place.line, place.column}).second) {
        m_reporter
            .mistake("spice:duplicate_element", place,
                     "a second element '" + m_netlist.names.text(name) + "' under these conditions")
            .notes.push_back({"the first one is here", source_place(*other->second)});
      }
    };
    for (const Element& element : instance.definition->elements) {
      check(element.name, element.branch, element.place);
    }
    for (const Call& call : instance.definition->calls) {
      check(call.name, call.branch, call.place);
    }
  }

  const Netlist& m_netlist;
  ExpansionVisitor& m_visitor;
  Reporter& m_reporter;
  ParameterScopes m_scopes;
  std::vector<Instance> m_path;
  std::set<std::tuple<const TextFile*, std::uint32_t, std::uint32_t>> m_reported;
};

}  // namespace

void expand(const Netlist& netlist, ExpansionVisitor& visitor, Reporter& reporter) {
  Expander(netlist, visitor, reporter).run();
}

}  // namespace kinemo::formats::spice
