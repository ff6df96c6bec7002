#include "formats/spice/host_names.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <map>
#include <set>
#include <string_view>

namespace kinemo::formats::spice {

namespace {

/// Words that mean something else to the host's expressions, and parameters of the blocks themselves, in order.
constexpr std::array<std::string_view, 12> taken_words{"ans", "elements", "end", "eps", "false",     "i",
                                                       "inf", "j",        "nan", "pi",  "terminals", "true"};

bool is_taken(std::string_view name) {
  return std::find(taken_words.begin(), taken_words.end(), name) != taken_words.end();
}

bool fits_name(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool can_be_kept(const std::string& name) {
  return !name.empty() && std::isalpha(static_cast<unsigned char>(name.front())) != 0 &&
         std::all_of(name.begin(), name.end(), fits_name) && !is_taken(name) && find_built_in_function(name) == nullptr;
}

std::string changed_name(const std::string& name) {
  std::string changed = "p_" + name;
  std::replace_if(
      changed.begin(), changed.end(), [](char c) { return !fits_name(c); }, '_');
  return changed;
}

std::set<std::string> parameter_names(const Netlist& netlist) {
  std::set<std::string> names;
  for (const Definition& definition : netlist.definitions) {
    for (const Parameter& parameter : definition.parameters) {
      names.insert(parameter.name);
    }
  }
  return names;
}

}  // namespace

/// Names that are kept come first, so that others give way to them.
HostNames::HostNames(const Netlist& netlist) {
  const std::set<std::string> names = parameter_names(netlist);
  std::set<std::string> used;
  std::map<std::string, int> numbers;  // the last one behind a name that was wanted more than once
  std::copy_if(names.begin(), names.end(), std::inserter(used, used.end()), can_be_kept);
  for (const std::string& name : names) {
    if (can_be_kept(name)) {
      continue;
    }
    const std::string wanted = changed_name(name);
    std::string changed = wanted;
    for (int& number = numbers[wanted]; !used.insert(changed).second;) {
      changed = wanted + "_" + std::to_string(++number);
    }
    m_names.emplace(name, changed);
  }
}

const std::string& HostNames::name(const std::string& parameter) const {
  const auto changed = m_names.find(parameter);
  return changed == m_names.end() ? parameter : changed->second;
}

std::string HostNames::expression(const Expression& expression) const {
  std::vector<ExpressionStep> steps = expression.steps();
  for (ExpressionStep& step : steps) {
    if (step.operation == Operation::name) {
      step.text = name(step.text);
    }
  }
  return host_text(Expression(std::move(steps)));
}

}  // namespace kinemo::formats::spice
