#include <algorithm>
#include <array>

#include "formats/spice/write_functions.hpp"

namespace kinemo::formats::spice {

namespace {

/// In the order of names. A divisor that may be zero gets a one in that case, since the simulator computes both
/// branches of a choice.
constexpr std::array<WrittenFunction, 49> written_functions{{
    {"abs", 1, UnitRule::kept, "abs($1)"},
    {"acos", 1, UnitRule::plain, "acos($1)"},
    {"acosh", 1, UnitRule::plain, "acosh($1)"},
    {"and", 2, UnitRule::condition, "#1&&#2", TermLevel::and_also},
    {"asin", 1, UnitRule::plain, "asin($1)"},
    {"asinh", 1, UnitRule::plain, "asinh($1)"},
    {"atan", 1, UnitRule::plain, "atan($1)"},
    {"atan2", 2, UnitRule::ratio,
     "ternary_fcn(#2==0,sgn($1)*1.5707963267948966,atan(#1/(#2+(#2==0)))+"
     "(#2<0)*ternary_fcn(#1<0,-3.141592653589793,3.141592653589793))"},
    {"atanh", 1, UnitRule::plain, "atanh($1)"},
    {"ceil", 1, UnitRule::rounded, "ceil($1)"},
    {"cos", 1, UnitRule::plain, "cos($1)"},
    {"cosd", 1, UnitRule::plain, "cos(#1*0.017453292519943295)"},
    {"cosh", 1, UnitRule::plain, "cosh($1)"},
    {"deg2rad", 1, UnitRule::plain, "#1*0.017453292519943295", TermLevel::multiplicative},
    {"double", 1, UnitRule::kept, "#1"},
    {"exp", 1, UnitRule::plain, "exp($1)"},
    {"expm1", 1, UnitRule::plain, "2*exp(#1/2)*sinh(#1/2)", TermLevel::multiplicative},
    {"fix", 1, UnitRule::rounded, "int($1)"},
    {"floor", 1, UnitRule::rounded, "floor($1)"},
    {"hypot", 2, UnitRule::common, "sqrt(#1*#1+#2*#2)"},
    {"log", 1, UnitRule::plain, "ln($1)"},
    {"log10", 1, UnitRule::plain, "log10($1)"},
    {"log1p", 1, UnitRule::plain, "2*atanh(#1/(2+#1))", TermLevel::multiplicative},
    {"log2", 1, UnitRule::plain, "ln($1)/0.6931471805599453", TermLevel::multiplicative},
    {"logical", 1, UnitRule::condition, "#1!=0", TermLevel::comparison},
    {"max", 1, UnitRule::kept, "#1"},
    {"max", 2, UnitRule::common, "max($1,$2)"},
    {"mean", 1, UnitRule::kept, "#1"},
    {"min", 1, UnitRule::kept, "#1"},
    {"min", 2, UnitRule::common, "min($1,$2)"},
    {"mod", 2, UnitRule::common, "ternary_fcn(#2==0,$1,#1-#2*floor(#1/(#2+(#2==0))))"},
    {"not", 1, UnitRule::condition, "!#1", TermLevel::sign},
    {"or", 2, UnitRule::condition, "#1||#2", TermLevel::or_else},
    {"prod", 1, UnitRule::kept, "#1"},
    {"rad2deg", 1, UnitRule::plain, "#1*57.29577951308232", TermLevel::multiplicative},
    {"real", 1, UnitRule::kept, "#1"},
    {"rem", 2, UnitRule::common, "#1%#2", TermLevel::multiplicative},
    {"round", 1, UnitRule::rounded, "sgn($1)*floor(abs($1)+0.5)", TermLevel::multiplicative},
    {"sign", 1, UnitRule::condition, "sgn($1)"},
    {"sin", 1, UnitRule::plain, "sin($1)"},
    {"sind", 1, UnitRule::plain, "sin(#1*0.017453292519943295)"},
    {"sinh", 1, UnitRule::plain, "sinh($1)"},
    {"sqrt", 1, UnitRule::root, "sqrt($1)"},
    {"sum", 1, UnitRule::kept, "#1"},
    {"tan", 1, UnitRule::plain, "tan($1)"},
    {"tand", 1, UnitRule::plain, "tan(#1*0.017453292519943295)"},
    {"tanh", 1, UnitRule::plain, "tanh($1)"},
    {"transpose", 1, UnitRule::kept, "#1"},
    {"uminus", 1, UnitRule::kept, "-#1", TermLevel::sign},
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
