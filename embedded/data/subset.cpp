#include "embedded/data/subset.hpp"

#include <algorithm>
#include <array>

namespace data2::core {

namespace ex = embedded::expression;

namespace {

// In the order of the alphabet, for the search. Functions of one number or several, element by element or over a
// matrix.
constexpr std::array<std::string_view, 79> functions{
    "abs",   "acos",    "acosh",   "all",      "and",   "any",   "asin",      "asinh",     "atan",    "atan2",
    "atanh", "ceil",    "cos",     "cosd",     "cosh",  "cross", "cumprod",   "cumsum",    "deg2rad", "det",
    "diag",  "diff",    "dot",     "double",   "exp",   "expm1", "eye",       "factorial", "fix",     "floor",
    "hypot", "interp1", "inv",     "isfinite", "isinf", "isnan", "length",    "linspace",  "log",     "log10",
    "log1p", "log2",    "logical", "max",      "mean",  "min",   "minus",     "mod",       "mtimes",  "norm",
    "not",   "numel",   "ones",    "or",       "plus",  "power", "prod",      "rad2deg",   "rdivide", "real",
    "rem",   "repmat",  "reshape", "round",    "sign",  "sin",   "sind",      "sinh",      "size",    "sort",
    "sqrt",  "sum",     "tan",     "tand",     "tanh",  "times", "transpose", "uminus",    "zeros"};
static_assert(std::is_sorted(functions.begin(), functions.end()));

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

bool is_function_of_numbers(std::string_view name) {
  return std::binary_search(functions.begin(), functions.end(), name);
}

bool is_constant(std::string_view name) {
  return std::binary_search(constants.begin(), constants.end(), name);
}

bool is_in_subset(const ex::Node& tree) {
  const auto& children = tree.children();
  return is_allowed(tree) &&
         std::all_of(children.begin(), children.end(), [](const ex::Tree& child) { return is_in_subset(*child); });
}

}  // namespace data2::core
