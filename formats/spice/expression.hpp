// Numeric expressions of the netlist dialect: read into a list of operations in the order of evaluation (operands
// first), so that neither long nor deep expressions need a deep stack. A value type; users share it by pointer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::formats::spice {

/// What an operation does; it takes its operands from the results before it.
enum class Operation : std::uint8_t {
  number,  ///< no operands
  name,    ///< value of a parameter; no operands
  probe,   ///< v(...), i(...) or another quantity of the running circuit; no operands
  negate,
  logical_not,
  power,
  multiply,
  divide,
  integer_divide,
  remainder,
  add,
  subtract,
  equal,
  not_equal,
  less,
  less_equal,
  greater,
  greater_equal,
  logical_and,
  logical_or,
  choose,  ///< condition, value if true, value if false
  call,    ///< function `text` of `operands` operands
};

struct ExpressionStep {
  Operation operation = Operation::number;
  std::uint32_t operands = 0;
  double number = 0;
  std::string text;        ///< of a name, probe or call, in lower case
  std::size_t offset = 0;  ///< in the text that was read
};

/// Why an expression can't be read or has no value, and at which offset of its text.
struct ExpressionError {
  std::string text;
  std::size_t offset = 0;
};

class Expression {
 public:
  Expression() = default;
  explicit Expression(std::vector<ExpressionStep> steps) : m_steps(std::move(steps)) {}
  static Expression of_number(double value);

  const std::vector<ExpressionStep>& steps() const { return m_steps; }
  bool empty() const { return m_steps.empty(); }
  /// Whether it is a number and nothing else.
  bool is_number() const { return m_steps.size() == 1 && m_steps.front().operation == Operation::number; }
  /// Whether it depends on the state of the circuit, so that it has no value before a simulation.
  bool has_probes() const;
  /// Whether it uses parameters.
  bool has_names() const;

 private:
  std::vector<ExpressionStep> m_steps;
};

/// Longest expression, in steps, that is read or made by putting functions in place.
inline constexpr std::size_t longest_expression = 200'000;

/// Reads an expression without its braces or quotes. Nothing on an error.
std::optional<Expression> parse_expression(std::string_view text, ExpressionError& error);

/// Reads a number as a card has it, with scale suffix and unit letters ("4.7kohm", "1mil"); nothing if it isn't one.
std::optional<double> parse_number(std::string_view text);

/// Reads digits and a scale suffix from the front of `text`; `length` is what was read with the letters behind it.
/// Inside of an expression `mil` is a milli with letters behind.
std::optional<double> parse_number_prefix(std::string_view text, std::size_t& length, bool in_expression);

/// A function of a netlist: parameters stand in its body as names.
struct Function {
  std::vector<std::string> parameters;
  std::shared_ptr<const Expression> body;
};

/// Finds a function that a netlist defines; null for others.
using FunctionLookup = std::function<const Function*(const std::string& name)>;
/// Finds what stands for a name; null leaves the name as it is.
using NameLookup = std::function<const Expression*(const std::string& name)>;

/// Puts the bodies of the netlist's own functions in place of their calls. Nothing on a wrong number of arguments, on
/// functions that call themselves, and beyond `longest_expression`.
std::optional<Expression> with_functions(const Expression& expression, const FunctionLookup& functions,
                                         ExpressionError& error);

/// Puts expressions in place of names. Nothing beyond `limit` steps.
std::optional<Expression> with_names(const Expression& expression, const NameLookup& names, std::size_t limit);

/// Finds the value of a parameter; nothing when there is none.
using ValueLookup = std::function<std::optional<double>(const std::string& name)>;

/// Random functions have their nominal value.
std::optional<double> evaluate(const Expression& expression, const ValueLookup& values, ExpressionError& error);

/// In the expression language of the host: `**` is `^`, `c ? a : b` is `ternary_fcn(c, a, b)`, and so on. Functions are
/// those that the host has; names stay.
std::string host_text(const Expression& expression);
/// Tells what to write for a name; nothing leaves it as it is.
using NameTexts = std::function<std::optional<std::string>(const std::string& name)>;
/// In the netlist's own language. What is written for a name is a number or binds as tightly as a name.
std::string netlist_text(const Expression& expression, const NameTexts& names);

/// The shortest text from which the same number is read.
std::string number_text(double value);

/// Whether the dialect has a function of this name and how many arguments it takes (the most, for some).
struct BuiltInFunction {
  std::string_view name;
  std::uint32_t least_arguments;
  std::uint32_t most_arguments;
  double (*value)(const double* arguments, std::size_t count);
  /// The host's expression with $1, $2, ... for the arguments and $* for all of them.
  std::string_view host_form;
};
const BuiltInFunction* find_built_in_function(std::string_view name);
/// Names of all built-in functions, for suggestions.
std::vector<std::string_view> built_in_function_names();

}  // namespace kinemo::formats::spice
