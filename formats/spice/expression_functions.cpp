#include <algorithm>
#include <array>
#include <cmath>

#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

namespace {

using Arguments = const double*;

double sign_of(double value) {
  return value > 0 ? 1 : value < 0 ? -1 : 0;
}

/// In the order of names.
constexpr std::array<BuiltInFunction, 35> built_in_functions{{
    {"abs", 1, 1, [](Arguments a, std::size_t) { return std::fabs(a[0]); }, "abs($1)"},
    {"acos", 1, 1, [](Arguments a, std::size_t) { return std::acos(a[0]); }, "acos($1)"},
    {"acosh", 1, 1, [](Arguments a, std::size_t) { return std::acosh(a[0]); }, "acosh($1)"},
    {"agauss", 3, 3, [](Arguments a, std::size_t) { return a[0]; }, "($1)"},
    {"arctan", 1, 1, [](Arguments a, std::size_t) { return std::atan(a[0]); }, "atan($1)"},
    {"asin", 1, 1, [](Arguments a, std::size_t) { return std::asin(a[0]); }, "asin($1)"},
    {"asinh", 1, 1, [](Arguments a, std::size_t) { return std::asinh(a[0]); }, "asinh($1)"},
    {"atan", 1, 1, [](Arguments a, std::size_t) { return std::atan(a[0]); }, "atan($1)"},
    {"atanh", 1, 1, [](Arguments a, std::size_t) { return std::atanh(a[0]); }, "atanh($1)"},
    {"aunif", 2, 2, [](Arguments a, std::size_t) { return a[0]; }, "($1)"},
    {"ceil", 1, 1, [](Arguments a, std::size_t) { return std::ceil(a[0]); }, "ceil($1)"},
    {"cos", 1, 1, [](Arguments a, std::size_t) { return std::cos(a[0]); }, "cos($1)"},
    {"cosh", 1, 1, [](Arguments a, std::size_t) { return std::cosh(a[0]); }, "cosh($1)"},
    {"exp", 1, 1, [](Arguments a, std::size_t) { return std::exp(a[0]); }, "exp($1)"},
    {"floor", 1, 1, [](Arguments a, std::size_t) { return std::floor(a[0]); }, "floor($1)"},
    {"gauss", 3, 3, [](Arguments a, std::size_t) { return a[0]; }, "($1)"},
    {"int", 1, 1, [](Arguments a, std::size_t) { return std::trunc(a[0]); }, "fix($1)"},
    {"limit", 2, 2, [](Arguments a, std::size_t) { return a[0]; }, "($1)"},
    {"ln", 1, 1, [](Arguments a, std::size_t) { return std::log(a[0]); }, "log($1)"},
    {"log", 1, 1, [](Arguments a, std::size_t) { return std::log(a[0]); }, "log($1)"},
    {"log10", 1, 1, [](Arguments a, std::size_t) { return std::log10(a[0]); }, "log10($1)"},
    {"max", 1, 2, [](Arguments a, std::size_t n) { return std::fmax(a[0], a[n - 1]); }, "max($*)"},
    {"min", 1, 2, [](Arguments a, std::size_t n) { return std::fmin(a[0], a[n - 1]); }, "min($*)"},
    {"nint", 1, 1, [](Arguments a, std::size_t) { return std::nearbyint(a[0]); },
     "ternary_fcn(abs(rem($1, 1)) == 0.5, 2*round(($1)/2), round($1))"},  // halves go to the even neighbour
    {"pow", 2, 2, [](Arguments a, std::size_t) { return std::pow(a[0], a[1]); }, "($1)^($2)"},
    {"pwr", 2, 2, [](Arguments a, std::size_t) { return std::pow(std::fabs(a[0]), a[1]); }, "abs($1)^($2)"},
    {"sgn", 1, 1, [](Arguments a, std::size_t) { return sign_of(a[0]); }, "sign($1)"},
    {"sin", 1, 1, [](Arguments a, std::size_t) { return std::sin(a[0]); }, "sin($1)"},
    {"sinh", 1, 1, [](Arguments a, std::size_t) { return std::sinh(a[0]); }, "sinh($1)"},
    {"sqr", 1, 1, [](Arguments a, std::size_t) { return a[0] * a[0]; }, "($1)^2"},
    {"sqrt", 1, 1, [](Arguments a, std::size_t) { return std::sqrt(a[0]); }, "sqrt($1)"},
    {"tan", 1, 1, [](Arguments a, std::size_t) { return std::tan(a[0]); }, "tan($1)"},
    {"tanh", 1, 1, [](Arguments a, std::size_t) { return std::tanh(a[0]); }, "tanh($1)"},
    {"ternary_fcn", 3, 3, [](Arguments a, std::size_t) { return a[0] != 0 ? a[1] : a[2]; }, "ternary_fcn($1, $2, $3)"},
    {"unif", 2, 2, [](Arguments a, std::size_t) { return a[0]; }, "($1)"},
}};

}  // namespace

const BuiltInFunction* find_built_in_function(std::string_view name) {
  const auto found =
      std::lower_bound(built_in_functions.begin(), built_in_functions.end(), name,
                       [](const BuiltInFunction& row, std::string_view wanted) { return row.name < wanted; });
  return found != built_in_functions.end() && found->name == name ? &*found : nullptr;
}

std::vector<std::string_view> built_in_function_names() {
  std::vector<std::string_view> names;
  for (const BuiltInFunction& row : built_in_functions) {
    names.push_back(row.name);
  }
  return names;
}

}  // namespace kinemo::formats::spice
