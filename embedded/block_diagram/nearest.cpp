#include "embedded/block_diagram/nearest.hpp"

#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace embedded::block_diagram {

namespace {

/// Longer texts aren't compared: nobody mistypes them, and the distance is quadratic.
constexpr std::size_t longest = 128;

std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearestName(const std::string& name, const std::vector<std::string>& candidates) {
  if (name.empty() || name.size() > longest) return {};
  const std::string wanted = kmf::lower(name);
  std::size_t best = std::max<std::size_t>(2, wanted.size() / 3) + 1;
  std::string result;
  for (const std::string& candidate : candidates) {
    if (candidate.size() > longest) continue;
    const std::size_t d = distance(wanted, kmf::lower(candidate));
    if (d >= best || d >= candidate.size()) continue;
    best = d;
    result = candidate;
  }
  return result;
}

}  // namespace embedded::block_diagram
