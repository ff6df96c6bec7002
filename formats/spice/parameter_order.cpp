#include "formats/spice/parameter_order.hpp"

namespace kinemo::formats::spice {

namespace {

/// Visits the parameters depth first, with a stack of its own since chains may be long.
class ParameterSorter {
 public:
  ParameterSorter(Definition& definition, bool is_top, Reporter& reporter)
      : m_definition(definition), m_is_top(is_top), m_reporter(reporter) {
    for (std::size_t i = 0; i < definition.parameters.size(); ++i) {
      m_indices.emplace(definition.parameters[i].name, i);
    }
    m_states.resize(definition.parameters.size(), State::fresh);
  }

  void sort() {
    for (std::size_t i = 0; i < m_states.size(); ++i) {
      visit(i);
    }
    std::vector<Parameter> sorted;
    for (const std::size_t index : m_order) {
      sorted.push_back(std::move(m_definition.parameters[index]));
    }
    m_definition.parameters = std::move(sorted);
  }

 private:
  enum class State { fresh, open, done };
  struct Visit {
    std::size_t parameter;
    std::size_t step;  ///< next step of its expression to look at
  };

  void visit(std::size_t first) {
    if (m_states[first] != State::fresh) {
      return;
    }
    std::vector<Visit> path{{first, 0}};
    m_states[first] = State::open;
    while (!path.empty()) {
      Visit& top = path.back();
      const Parameter& parameter = m_definition.parameters[top.parameter];
      if (parameter.value == nullptr || top.step == parameter.value->steps().size()) {
        m_states[top.parameter] = State::done;
        m_order.push_back(top.parameter);
        path.pop_back();
        continue;
      }
      const ExpressionStep& step = parameter.value->steps()[top.step++];
      const auto needed = step.operation == Operation::name ? m_indices.find(step.text) : m_indices.end();
      if (needed == m_indices.end() || (needed->second == top.parameter && !m_is_top)) {
        continue;
      }
      if (m_states[needed->second] == State::open) {
        report_cycle(path, needed->second);
      } else if (m_states[needed->second] == State::fresh) {
        m_states[needed->second] = State::open;
        path.push_back({needed->second, 0});
      }
    }
  }

  void report_cycle(const std::vector<Visit>& path, std::size_t first) {
    std::string names;
    std::size_t at = path.size();
    while (at-- > 0 && path[at].parameter != first) {
    }
    const std::size_t shown = std::min<std::size_t>(path.size(), at + 10);
    for (; at < shown; ++at) {
      names += m_definition.parameters[path[at].parameter].name + " -> ";
    }
    const Parameter& parameter = m_definition.parameters[first];
    m_reporter.mistake("spice:parameter_cycle", parameter.place,
                       "parameter '" + parameter.name + "' needs its own value: " + names +
                           (shown < path.size() ? "... -> " : "") + parameter.name);
  }

  Definition& m_definition;
  bool m_is_top;
  Reporter& m_reporter;
  std::map<std::string, std::size_t> m_indices;
  std::vector<State> m_states;
  std::vector<std::size_t> m_order;
};

}  // namespace

void order_parameters(Definition& definition, bool is_top, Reporter& reporter) {
  ParameterSorter(definition, is_top, reporter).sort();
}

}  // namespace kinemo::formats::spice
