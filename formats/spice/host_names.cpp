#include "formats/spice/host_names.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace kinemo::formats::spice {

namespace {

/// Words that mean something else to the host's expressions, and parameters of the blocks themselves, in order.
constexpr std::array<std::string_view, 12> taken_words{"ans", "elements", "end", "eps", "false",     "i",
                                                       "inf", "j",        "nan", "pi",  "terminals", "true"};

bool is_taken(std::string_view name) {
  return std::find(taken_words.begin(), taken_words.end(), name) != taken_words.end();
}

}  // namespace

std::string host_name(const std::string& parameter) {
  std::string name;
  bool kept = !parameter.empty() && std::isalpha(static_cast<unsigned char>(parameter.front())) != 0;
  for (const char c : parameter) {
    const bool fits = std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
    name += fits ? c : '_';
    kept = kept && fits;
  }
  return kept && !is_taken(name) && find_built_in_function(name) == nullptr ? name : "p_" + name;
}

std::string host_expression(const Expression& expression) {
  std::vector<ExpressionStep> steps = expression.steps();
  for (ExpressionStep& step : steps) {
    if (step.operation == Operation::name) {
      step.text = host_name(step.text);
    }
  }
  return host_text(Expression(std::move(steps)));
}

}  // namespace kinemo::formats::spice
