#include "embedded/data/subset.hpp"

#include <algorithm>
#include <array>

namespace data2::core {

namespace ex = embedded::expression;

namespace {

// In the order of the alphabet, for the search. Functions of one number or several, element by element or over a
// matrix.
constexpr std::array functions{
    std::string_view("abs"),       std::string_view("acos"),     std::string_view("acosh"),
    std::string_view("asin"),      std::string_view("asinh"),    std::string_view("atan"),
    std::string_view("atan2"),     std::string_view("atanh"),    std::string_view("ceil"),
    std::string_view("cos"),       std::string_view("cosd"),     std::string_view("cosh"),
    std::string_view("cross"),     std::string_view("cumprod"),  std::string_view("cumsum"),
    std::string_view("deg2rad"),   std::string_view("det"),      std::string_view("diag"),
    std::string_view("diff"),      std::string_view("dot"),      std::string_view("double"),
    std::string_view("exp"),       std::string_view("expm1"),    std::string_view("eye"),
    std::string_view("factorial"), std::string_view("fix"),      std::string_view("floor"),
    std::string_view("hypot"),     std::string_view("interp1"),  std::string_view("inv"),
    std::string_view("length"),    std::string_view("linspace"), std::string_view("log"),
    std::string_view("log10"),     std::string_view("log1p"),    std::string_view("log2"),
    std::string_view("max"),       std::string_view("mean"),     std::string_view("min"),
    std::string_view("mod"),       std::string_view("norm"),     std::string_view("numel"),
    std::string_view("ones"),      std::string_view("power"),    std::string_view("prod"),
    std::string_view("rad2deg"),   std::string_view("rem"),      std::string_view("reshape"),
    std::string_view("round"),     std::string_view("sign"),     std::string_view("sin"),
    std::string_view("sind"),      std::string_view("sinh"),     std::string_view("size"),
    std::string_view("sqrt"),      std::string_view("sum"),      std::string_view("tan"),
    std::string_view("tand"),      std::string_view("tanh"),     std::string_view("transpose"),
    std::string_view("zeros"),
};
static_assert(std::is_sorted(functions.begin(), functions.end()));

constexpr std::array constants{
    std::string_view("Inf"), std::string_view("NaN"), std::string_view("eps"), std::string_view("false"),
    std::string_view("inf"), std::string_view("nan"), std::string_view("pi"),  std::string_view("true"),
};
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
