#include "embedded/scripting_runtime/evaluator.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

char folded(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Letters to change, add or leave out to get from one name to the other; the case of letters counts as nothing.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = diagonal + (folded(a[i - 1]) == folded(b[j - 1]) ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, change}));
    }
  }
  return row.back();
}

}  // namespace

std::string nearest_name(const std::string& wanted, const std::vector<std::string>& known) {
  constexpr std::size_t longest = 100;
  constexpr std::size_t most_names = 20000;
  if (wanted.size() > longest) return {};
  std::size_t best = wanted.size() < 2 ? 1 : wanted.size() < 4 ? 2 : 3;  // steps from which on a name is not near
  std::string result;
  for (std::size_t i = 0; i < std::min(known.size(), most_names); ++i) {
    const std::string& name = known[i];
    const std::size_t gap = name.size() > wanted.size() ? name.size() - wanted.size() : wanted.size() - name.size();
    if (gap >= best || name.size() > longest) continue;
    const std::size_t steps = distance(wanted, name);
    if (steps >= best) continue;
    best = steps;
    result = name;
  }
  return result;
}

}  // namespace embedded::scripting_runtime
