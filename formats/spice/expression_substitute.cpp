#include <algorithm>

#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

namespace {

constexpr int deepest_function = 100;

/// Puts functions in place, step by step. `m_work` bounds the time where nested calls multiply.
class FunctionExpander {
 public:
  FunctionExpander(const FunctionLookup& functions, ExpressionError& error) : m_functions(functions), m_error(error) {}

  bool expand(const std::vector<ExpressionStep>& steps, std::vector<ExpressionStep>& result, int depth) {
    std::vector<std::size_t> begins;  // of the operands that are on the stack, in `result`
    for (const ExpressionStep& step : steps) {
      const std::size_t first = begins.size() - step.operands;
      const std::size_t begin = step.operands == 0 ? result.size() : begins[first];
      const Function* function = step.operation == Operation::call ? m_functions(step.text) : nullptr;
      if (++m_work > longest_expression) {
        return fail("the expression gets too long when its functions are put in place", step);
      }
      if (function == nullptr) {
        result.push_back(step);
      } else if (!call(*function, step, begins, first, result, depth)) {
        return false;
      }
      begins.resize(first);
      begins.push_back(begin);
    }
    return true;
  }

 private:
  bool fail(std::string text, const ExpressionStep& step) {
    m_error = {std::move(text), step.offset};
    return false;
  }

  bool call(const Function& function, const ExpressionStep& step, const std::vector<std::size_t>& begins,
            std::size_t first, std::vector<ExpressionStep>& result, int depth) {
    if (step.operands != function.parameters.size()) {
      return fail("function '" + step.text + "' takes " + std::to_string(function.parameters.size()) +
                      " argument(s), not " + std::to_string(step.operands),
                  step);
    }
    if (depth >= deepest_function) {
      return fail("function '" + step.text + "' calls itself, or functions are nested too deeply", step);
    }
    std::vector<ExpressionStep> body;
    if (!expand(function.body->steps(), body, depth + 1)) {
      m_error.offset = step.offset;
      return false;
    }
    const std::size_t begin = step.operands == 0 ? result.size() : begins[first];
    const std::vector<ExpressionStep> arguments(result.begin() + static_cast<std::ptrdiff_t>(begin), result.end());
    result.resize(begin);
    for (const ExpressionStep& inner : body) {
      put(function, inner, step, arguments, begins, first, begin, result);
      if (result.size() > longest_expression || m_work > longest_expression) {
        return fail("the expression gets too long when its functions are put in place", step);
      }
    }
    return true;
  }

  /// One step of a body; a parameter's name gives way to the argument.
  void put(const Function& function, const ExpressionStep& inner, const ExpressionStep& step,
           const std::vector<ExpressionStep>& arguments, const std::vector<std::size_t>& begins, std::size_t first,
           std::size_t begin, std::vector<ExpressionStep>& result) {
    const auto& names = function.parameters;
    const auto parameter =
        inner.operation == Operation::name ? std::find(names.begin(), names.end(), inner.text) : names.end();
    if (parameter == names.end()) {
      result.push_back(inner);
      result.back().offset = step.offset;
      ++m_work;
      return;
    }
    const auto number = static_cast<std::size_t>(parameter - names.begin());
    const std::size_t from = begins[first + number] - begin;
    const std::size_t to = number + 1 < names.size() ? begins[first + number + 1] - begin : arguments.size();
    result.insert(result.end(), arguments.begin() + static_cast<std::ptrdiff_t>(from),
                  arguments.begin() + static_cast<std::ptrdiff_t>(to));
    m_work += to - from;
  }

  const FunctionLookup& m_functions;
  ExpressionError& m_error;
  std::size_t m_work = 0;
};

}  // namespace

std::optional<Expression> with_functions(const Expression& expression, const FunctionLookup& functions,
                                         ExpressionError& error) {
  const auto& steps = expression.steps();
  if (std::none_of(steps.begin(), steps.end(), [](const auto& step) { return step.operation == Operation::call; })) {
    return expression;
  }
  std::vector<ExpressionStep> result;
  if (!FunctionExpander(functions, error).expand(steps, result, 0)) {
    return std::nullopt;
  }
  return Expression(std::move(result));
}

std::optional<Expression> with_names(const Expression& expression, const NameLookup& names, std::size_t limit) {
  std::vector<ExpressionStep> result;
  for (const ExpressionStep& step : expression.steps()) {
    const Expression* replacement = step.operation == Operation::name ? names(step.text) : nullptr;
    if (replacement == nullptr) {
      result.push_back(step);
    } else {
      result.insert(result.end(), replacement->steps().begin(), replacement->steps().end());
    }
    if (result.size() > limit) {
      return std::nullopt;
    }
  }
  return Expression(std::move(result));
}

}  // namespace kinemo::formats::spice
