#include "embedded/data/subset.hpp"

#include <algorithm>
#include <array>

namespace data2::core {

namespace ex = embedded::expression;

namespace {

// In the order of the alphabet, for the search.
constexpr std::array<std::string_view, 8> constants{"Inf", "NaN", "eps", "false", "inf", "nan", "pi", "true"};
static_assert(std::is_sorted(constants.begin(), constants.end()));

bool can_be_indexed(const ex::Node& node) {
  return node.kind() == ex::Kind::name || node.kind() == ex::Kind::field || node.kind() == ex::Kind::index;
}

bool is_allowed(const ex::Node& node) {
  switch (node.kind()) {
    case ex::Kind::number:
    case ex::Kind::name:
    case ex::Kind::matrix:
    case ex::Kind::row:
    case ex::Kind::unary:
    case ex::Kind::chain:
    case ex::Kind::transpose:
      return true;
    case ex::Kind::index:
    case ex::Kind::field:
      return can_be_indexed(node.child(0));
    default:
      return false;
  }
}

}  // namespace

bool is_constant(std::string_view name) {
  return std::binary_search(constants.begin(), constants.end(), name);
}

bool is_in_subset(const ex::Node& tree) {
  const auto& children = tree.children();
  return is_allowed(tree) &&
         std::all_of(children.begin(), children.end(), [](const ex::Tree& child) { return is_in_subset(*child); });
}

}  // namespace data2::core
