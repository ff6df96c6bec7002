#include "formats/spice/live_expressions.hpp"

#include <algorithm>

namespace kinemo::formats::spice {

namespace {

/// Names that are looked at for one expression; bounds the time where a name is handed on through many levels.
constexpr std::size_t most_visits = 10'000;

/// A quantity of the circuit that names a node or an element means something else in another scope.
bool has_local_probes(const Expression& expression) {
  const auto& steps = expression.steps();
  return std::any_of(steps.begin(), steps.end(), [](const ExpressionStep& step) {
    return step.operation == Operation::probe && step.text.find('(') != std::string::npos;
  });
}

Expression of_name(const std::string& name) {
  return Expression({{Operation::name, 0, 0, name, 0}});
}

}  // namespace

/// An expression that is being put in, and the scope that its names belong to.
struct LiveExpressions::Visit {
  const std::vector<ExpressionStep>* steps;
  std::size_t next;
  std::size_t depth;
};

std::optional<double> LiveExpressions::value(const std::string& name, std::size_t depth) const {
  const ScopedParameter* parameter = m_scopes.find(name, depth);
  return parameter == nullptr ? std::nullopt : parameter->value;
}

Expression LiveExpressions::tell(const Expression& expression) {
  if (expression.is_number()) {
    return expression;
  }
  auto told = tell(expression, m_from, true);
  if (!told) {
    m_has_fixed = true;
    told = tell(expression, m_from, false);
  }
  if (told) {
    return std::move(*told);
  }
  ExpressionError error;
  const auto number = evaluate(
      expression, [this](const std::string& name) { return value(name); }, error);
  return number ? Expression::of_number(*number) : expression;
}

Expression LiveExpressions::tell_circuit(const Expression& expression) {
  return tell(expression, m_from, false).value_or(expression);
}

Expression LiveExpressions::tell_name(const std::string& name) {
  LiveExpressions here(m_scopes, m_at, m_at);
  Expression told = here.tell(of_name(name));
  m_has_fixed = m_has_fixed || here.m_has_fixed;
  return told;
}

std::optional<Expression> LiveExpressions::tell(const Expression& expression, std::size_t from, bool with_derived) {
  const std::size_t longest = expression.steps().size() + longest_growth;
  std::vector<ExpressionStep> result;
  std::vector<Visit> path{{&expression.steps(), 0, from}};
  for (std::size_t visits = 0; !path.empty();) {
    Visit& top = path.back();
    if (top.next == top.steps->size()) {
      path.pop_back();
      continue;
    }
    const ExpressionStep& step = (*top.steps)[top.next++];
    if (step.operation == Operation::name) {
      ++visits;
      put_name(step, top.depth, with_derived, path, result);
    } else {
      result.push_back(step);
    }
    if (result.size() > longest || visits > expression.steps().size() + most_visits) {
      return std::nullopt;
    }
  }
  return Expression(std::move(result));
}

/// One name: it goes to the result as it stands or as a number, or what it stands for is visited next.
void LiveExpressions::put_name(const ExpressionStep& step, std::size_t from, bool with_derived,
                               std::vector<Visit>& path, std::vector<ExpressionStep>& result) {
  const ScopedParameter* parameter = m_scopes.find(step.text, from);
  if (parameter == nullptr) {
    result.push_back(step);
    return;
  }
  const bool can_tell = parameter->told != nullptr;
  if (!parameter->value) {
    if (can_tell && !has_local_probes(*parameter->told)) {
      path.push_back({&parameter->told->steps(), 0, parameter->depth == 0 ? 0 : parameter->depth - 1});
    } else {
      result.push_back(step);
    }
  } else if (parameter->depth == 0 && can_tell && with_derived) {
    put_derived(step, *parameter, path, result);
  } else if (is_visible(step.text, *parameter)) {
    result.push_back(step);
  } else if (can_tell && parameter->depth != 0) {
    path.push_back({&parameter->told->steps(), 0, parameter->depth - 1});
  } else {
    put_fixed(step, *parameter, result);
  }
}

/// What a parameter of the top level is computed from may be hidden by parameters of the same names further in.
void LiveExpressions::put_derived(const ExpressionStep& step, const ScopedParameter& parameter,
                                  std::vector<Visit>& path, std::vector<ExpressionStep>& result) {
  const auto& steps = parameter.told->steps();
  const bool can_be_told = std::all_of(steps.begin(), steps.end(), [this](const ExpressionStep& source) {
    const auto* meaning = source.operation == Operation::name ? m_scopes.find(source.text, 0) : nullptr;
    return meaning == nullptr || is_visible(source.text, *meaning);
  });
  if (can_be_told) {
    path.push_back({&steps, 0, 0});
  } else {
    put_fixed(step, parameter, result);
  }
}

void LiveExpressions::put_fixed(const ExpressionStep& step, const ScopedParameter& parameter,
                                std::vector<ExpressionStep>& result) {
  m_has_fixed = true;
  if (is_visible(step.text, parameter)) {
    result.push_back(step);
  } else {
    result.push_back({Operation::number, 0, parameter.value.value_or(0), {}, step.offset});
  }
}

bool LiveExpressions::is_visible(const std::string& name, const ScopedParameter& parameter) const {
  return m_scopes.find(name, m_at) == &parameter;
}

}  // namespace kinemo::formats::spice
