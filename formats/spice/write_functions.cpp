#include <algorithm>
#include <array>

#include "formats/spice/write_expression.hpp"

namespace kinemo::formats::spice {

namespace {

/// In the order of names. Each form is a call or stands in brackets, and so does each argument that isn't one of a
/// call. A divisor that may be zero gets a one in that case, since the simulator computes both branches of a choice.
constexpr std::array<WrittenFunction, 56> written_functions{{
    {"abs", 1, "abs($1)"},
    {"acos", 1, "acos($1)"},
    {"acosh", 1, "acosh($1)"},
    {"and", 2, "(($1)&&($2))"},
    {"asin", 1, "asin($1)"},
    {"asinh", 1, "asinh($1)"},
    {"atan", 1, "atan($1)"},
    {"atan2", 2,
     "ternary_fcn(($2)==0,sgn($1)*1.5707963267948966,atan(($1)/(($2)+(($2)==0)))+"
     "(($2)<0)*ternary_fcn(($1)<0,-3.141592653589793,3.141592653589793))"},
    {"atanh", 1, "atanh($1)"},
    {"ceil", 1, "ceil($1)"},
    {"cos", 1, "cos($1)"},
    {"cosd", 1, "cos(($1)*0.017453292519943295)"},
    {"cosh", 1, "cosh($1)"},
    {"deg2rad", 1, "(($1)*0.017453292519943295)"},
    {"double", 1, "($1)"},
    {"exp", 1, "exp($1)"},
    {"expm1", 1, "(2*exp(($1)/2)*sinh(($1)/2))"},
    {"fix", 1, "int($1)"},
    {"floor", 1, "floor($1)"},
    {"hypot", 2, "sqrt(($1)*($1)+($2)*($2))"},
    {"log", 1, "ln($1)"},
    {"log10", 1, "log10($1)"},
    {"log1p", 1, "(2*atanh(($1)/(2+($1))))"},
    {"log2", 1, "(ln($1)/0.6931471805599453)"},
    {"logical", 1, "(($1)!=0)"},
    {"max", 1, "($1)"},
    {"max", 2, "max($1,$2)"},
    {"mean", 1, "($1)"},
    {"min", 1, "($1)"},
    {"min", 2, "min($1,$2)"},
    {"minus", 2, "(($1)-($2))"},
    {"mod", 2, "ternary_fcn(($2)==0,$1,($1)-($2)*floor(($1)/(($2)+(($2)==0))))"},
    {"mtimes", 2, "(($1)*($2))"},
    {"not", 1, "(!($1))"},
    {"or", 2, "(($1)||($2))"},
    {"plus", 2, "(($1)+($2))"},
    {"power", 2, "pow($1,$2)"},
    {"prod", 1, "($1)"},
    {"rad2deg", 1, "(($1)*57.29577951308232)"},
    {"rdivide", 2, "(($1)/($2))"},
    {"real", 1, "($1)"},
    {"rem", 2, "(($1)%($2))"},
    {"round", 1, "(sgn($1)*floor(abs($1)+0.5))"},
    {"sign", 1, "sgn($1)"},
    {"sin", 1, "sin($1)"},
    {"sind", 1, "sin(($1)*0.017453292519943295)"},
    {"sinh", 1, "sinh($1)"},
    {"sqrt", 1, "sqrt($1)"},
    {"sum", 1, "($1)"},
    {"tan", 1, "tan($1)"},
    {"tand", 1, "tan(($1)*0.017453292519943295)"},
    {"tanh", 1, "tanh($1)"},
    {"ternary_fcn", 3, "ternary_fcn($1,$2,$3)"},
    {"times", 2, "(($1)*($2))"},
    {"transpose", 1, "($1)"},
    {"uminus", 1, "(-($1))"},
}};

}  // namespace

const WrittenFunction* find_written_function(std::string_view name, std::size_t arguments) {
  const auto found = std::find_if(
      written_functions.begin(), written_functions.end(),
      [&](const WrittenFunction& function) { return function.name == name && function.arguments == arguments; });
  return found != written_functions.end() ? &*found : nullptr;
}

bool is_written_function(std::string_view name) {
  return std::any_of(written_functions.begin(), written_functions.end(),
                     [name](const WrittenFunction& function) { return function.name == name; });
}

}  // namespace kinemo::formats::spice
