#include "formats/spice/expression.hpp"

#include <algorithm>
#include <cmath>

#include "formats/diagnostics.hpp"

namespace kinemo::formats::spice {

namespace {

double binary_value(Operation operation, double left, double right) {
  switch (operation) {
    case Operation::power:
      return std::pow(std::fabs(left), right);  // as the simulator has it
    case Operation::multiply:
      return left * right;
    case Operation::divide:
      return left / right;
    case Operation::integer_divide:
      return std::trunc(left / right);
    case Operation::remainder:
      return std::fmod(left, right);
    case Operation::add:
      return left + right;
    case Operation::subtract:
      return left - right;
    case Operation::equal:
      return left == right;
    case Operation::not_equal:
      return left != right;
    case Operation::less:
      return left < right;
    case Operation::less_equal:
      return left <= right;
    case Operation::greater:
      return left > right;
    case Operation::greater_equal:
      return left >= right;
    case Operation::logical_and:
      return left != 0 && right != 0;
    default:
      return left != 0 || right != 0;
  }
}

/// What a call needs; nothing where the dialect has no such function or it takes another number of arguments.
const BuiltInFunction* checked_function(const ExpressionStep& call, ExpressionError& error) {
  const BuiltInFunction* function = find_built_in_function(call.text);
  if (function == nullptr) {
    const std::string nearest(nearest_name(call.text, built_in_function_names()));
    error = {"there is no function '" + call.text + "'" + (nearest.empty() ? "" : "; did you mean '" + nearest + "'?"),
             call.offset};
    return nullptr;
  }
  if (call.operands < function->least_arguments || call.operands > function->most_arguments) {
    error = {"function '" + call.text + "' takes " + std::to_string(function->least_arguments) + " argument(s), not " +
                 std::to_string(call.operands),
             call.offset};
    return nullptr;
  }
  return function;
}

}  // namespace

std::optional<double> evaluate(const Expression& expression, const ValueLookup& values, ExpressionError& error) {
  std::vector<double> stack;
  for (const ExpressionStep& step : expression.steps()) {
    const std::size_t first = stack.size() - step.operands;
    double value = step.number;
    switch (step.operation) {
      case Operation::number:
        break;
      case Operation::name: {
        const auto found = values(step.text);
        if (!found) {
          error = {"there is no parameter '" + step.text + "'", step.offset};
          return std::nullopt;
        }
        value = *found;
        break;
      }
      case Operation::probe:
        error = {"'" + step.text + "' has no value before a simulation", step.offset};
        return std::nullopt;
      case Operation::negate:
        value = -stack[first];
        break;
      case Operation::logical_not:
        value = stack[first] == 0;
        break;
      case Operation::choose:
        value = stack[first] != 0 ? stack[first + 1] : stack[first + 2];
        break;
      case Operation::call: {
        const BuiltInFunction* function = checked_function(step, error);
        if (function == nullptr) {
          return std::nullopt;
        }
        value = function->value(stack.data() + first, step.operands);
        break;
      }
      default:
        value = binary_value(step.operation, stack[first], stack[first + 1]);
    }
    stack.resize(first);
    stack.push_back(value);
  }
  if (stack.size() != 1) {
    error = {"the expression is empty", 0};
    return std::nullopt;
  }
  return stack.back();
}

}  // namespace kinemo::formats::spice
