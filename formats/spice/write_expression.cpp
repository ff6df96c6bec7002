#include "formats/spice/write_expression.hpp"

#include <array>
#include <cmath>
#include <vector>

#include "embedded/data/expr_node.hpp"
#include "embedded/data/subset.hpp"
#include "embedded/expression/print.hpp"
#include "formats/spice/expression.hpp"
#include "formats/spice/write_functions.hpp"
#include "formats/spice/write_terms.hpp"
#include "platform/foundation/exception.hpp"

namespace kinemo::formats::spice {

namespace ex = embedded::expression;
using units2::core::AbstractExpr;

namespace {

/// Functions are textual here, so arguments that stand twice in a form can make a text grow without bounds.
constexpr std::size_t longest_text = 100'000;

bool is_plain_number(const ex::Node& tree) {
  const bool is_negative = tree.kind() == ex::Kind::unary && tree.op() == ex::Operator::minus;
  return (is_negative ? tree.child(0) : tree).kind() == ex::Kind::number;
}

std::optional<double> number_of(const ex::Node& tree) {
  if (!is_plain_number(tree)) {
    return std::nullopt;
  }
  return tree.kind() == ex::Kind::number ? tree.number() : -tree.child(0).number();
}

Term number(double value) {
  if (!std::isfinite(value)) {
    throw NotWritable{"it has a number that isn't finite"};
  }
  return {number_text(value), value < 0 ? TermLevel::sign : TermLevel::atom, {}};
}

Term constant(const std::string& name) {
  static constexpr std::array<std::pair<std::string_view, double>, 4> values{
      {{"pi", 3.141592653589793}, {"eps", 2.220446049250313e-16}, {"true", 1}, {"false", 0}}};
  for (const auto& [known, value] : values) {
    if (name == known) {
      return number(value);
    }
  }
  throw NotWritable{data2::core::is_constant(name) ? "it has a number that isn't finite"
                                                   : "'" + name + "' is no parameter that is written"};
}

Term condition(std::string_view symbol, Term left, Term right, TermLevel level) {
  refuse_offset(left);
  refuse_offset(right);
  return joined(std::move(left), symbol, std::move(right), level);
}

Term binary(ex::Operator op, Term left, Term right, const std::optional<double>& right_number) {
  switch (op) {
    case ex::Operator::or_else:
    case ex::Operator::element_or:
      return condition("||", std::move(left), std::move(right), TermLevel::or_else);
    case ex::Operator::and_also:
    case ex::Operator::element_and:
      return condition("&&", std::move(left), std::move(right), TermLevel::and_also);
    case ex::Operator::not_equal:
      return comparison("!=", std::move(left), std::move(right));
    case ex::Operator::equal:
    case ex::Operator::less:
    case ex::Operator::less_equal:
    case ex::Operator::greater:
    case ex::Operator::greater_equal:
      return comparison(ex::symbol(op), std::move(left), std::move(right));
    case ex::Operator::plus:
    case ex::Operator::minus:
      return sum(ex::symbol(op), std::move(left), std::move(right));
    case ex::Operator::times:
    case ex::Operator::element_times:
      return product(std::move(left), std::move(right));
    case ex::Operator::divide:
    case ex::Operator::element_divide:
      return quotient(std::move(left), std::move(right));
    case ex::Operator::left_divide:
    case ex::Operator::element_left_divide:
      return quotient(std::move(right), std::move(left));
    case ex::Operator::power:
    case ex::Operator::element_power:
      return power(std::move(left), std::move(right), right_number);
    default:
      throw NotWritable{"the operator '" + std::string(ex::symbol(op)) + "' can't be said in a netlist"};
  }
}

/// Functions that stand for operators.
std::optional<ex::Operator> operator_of(std::string_view function) {
  static constexpr std::array<std::pair<std::string_view, ex::Operator>, 6> operators{
      {{"minus", ex::Operator::minus},
       {"mtimes", ex::Operator::times},
       {"plus", ex::Operator::plus},
       {"power", ex::Operator::power},
       {"rdivide", ex::Operator::divide},
       {"times", ex::Operator::times}}};
  for (const auto& [name, op] : operators) {
    if (name == function) {
      return op;
    }
  }
  return std::nullopt;
}

Term filled(const WrittenFunction& function, const std::vector<Term>& arguments) {
  Term result{{}, function.level, {}};
  const std::string_view form = function.form;
  for (std::size_t at = 0; at < form.size(); ++at) {
    const bool is_operand = form[at] == '#';
    if (!is_operand && form[at] != '$') {
      result.text += form[at];
      continue;
    }
    const Term& argument = arguments[static_cast<std::size_t>(form[++at] - '1')];
    result.text += is_operand && argument.level != TermLevel::atom ? bracketed(argument).text : argument.text;
  }
  return result;
}

void make_common(std::vector<Term>& terms) {
  for (std::size_t i = 1; i < terms.size(); ++i) {
    kinemo::formats::spice::make_common(terms.front(), terms[i]);
  }
}

/// A number in a unit with a factor is rounded in that unit.
Term rounded(const WrittenFunction& function, Term argument) {
  const AbstractExpr unit = argument.unit;
  Term number = told_in(std::move(argument), unit);
  return with_unit(filled(function, {std::move(number)}), unit);
}

/// Makes of the arguments what the function takes, and of the result what it gives.
Term applied(const WrittenFunction& function, std::vector<Term> arguments) {
  const AbstractExpr first = arguments.front().unit;
  if (function.rule == UnitRule::rounded) {
    return rounded(function, std::move(arguments.front()));
  }
  if (function.rule == UnitRule::root) {
    Term result = filled(function, arguments);
    result.unit = power(arguments.front(), number(0.5), 0.5).unit;
    return result;
  }
  if (function.rule == UnitRule::common || function.rule == UnitRule::ratio) {
    make_common(arguments);
  }
  const bool keeps = function.rule == UnitRule::kept || function.rule == UnitRule::common;
  for (Term& argument : arguments) {
    argument = function.rule == UnitRule::plain ? dimensionless(std::move(argument)) : std::move(argument);
    refuse_offset(argument);
  }
  Term result = filled(function, arguments);
  result.unit = !keeps ? AbstractExpr() : first.id() != 0 ? first : arguments.front().unit;
  return result;
}

class Writer {
 public:
  explicit Writer(const ParameterNameLookup& names) : m_names(names) {}

  /// Trees are never higher than `ex::height_limit`.
  Term write(const ex::Node& node) {
    Term term = node.kind() == ex::Kind::number ? number(node.number()) : composed(node);
    if (term.text.size() > longest_text) {
      throw NotWritable{"it gets too long"};
    }
    return term;
  }

 private:
  Term composed(const ex::Node& node) {
    if (const data2::core::Binding bound = data2::core::binding_of(node); bound.expression != nullptr) {
      return with_unit(write(*bound.expression), units2::core::parse(*bound.unit));
    }
    switch (node.kind()) {
      case ex::Kind::name:
        return name(node.text());
      case ex::Kind::unary:
        return unary(node);
      case ex::Kind::chain:
        return chain(node);
      case ex::Kind::transpose:
        return write(node.child(0));
      case ex::Kind::index:
        return call(node);
      case ex::Kind::matrix:
        return matrix(node);
      case ex::Kind::field:
        return field(node);
      default:
        throw NotWritable{"'" + ex::print(node) + "' can't be said in a netlist"};
    }
  }

  Term name(const std::string& name) {
    std::string problem;
    if (auto parameter = m_names(name, problem)) {
      return {std::move(parameter->name), TermLevel::atom, parameter->unit};
    }
    if (!problem.empty()) {
      throw NotWritable{problem};
    }
    return constant(name);
  }

  Term unary(const ex::Node& node) {
    Term term = write(node.child(0));
    if (node.op() == ex::Operator::plus) {
      return term;
    }
    refuse_offset(term);
    const bool negates = node.op() == ex::Operator::minus;
    const AbstractExpr unit = negates ? term.unit : AbstractExpr();
    const std::string text = term.level == TermLevel::atom ? term.text : bracketed(std::move(term)).text;
    return {(negates ? "-" : "!") + text, TermLevel::sign, unit};
  }

  Term chain(const ex::Node& node) {
    Term term = write(node.child(0));
    for (std::size_t i = 0; i < node.operators().size(); ++i) {
      const ex::Node& right = node.child(i + 1);
      term = binary(node.operators()[i], std::move(term), write(right), number_of(right));
    }
    return term;
  }

  /// A matrix of one number is that number.
  Term matrix(const ex::Node& node) {
    if (node.children().size() != 1 || node.child(0).children().size() != 1) {
      throw NotWritable{"it has a matrix, and parameters of netlists are numbers"};
    }
    return write(node.child(0).child(0));
  }

  /// `x.value` is the number of a value with a unit.
  Term field(const ex::Node& node) {
    if (node.text() != "value") {
      throw NotWritable{"'" + ex::print(node) + "' can't be said in a netlist"};
    }
    Term term = write(node.child(0));
    const AbstractExpr unit = term.unit;
    term = told_in(std::move(term), unit);
    term.unit = {};
    return term;
  }

  Term call(const ex::Node& node) {
    const bool has_name = node.child(0).kind() == ex::Kind::name;
    std::string problem;
    if (!has_name || m_names(node.child(0).text(), problem) || !problem.empty()) {
      throw NotWritable{"it takes an element of '" + ex::print(node.child(0)) +
                        "', and parameters of netlists are numbers"};
    }
    std::vector<Term> arguments;
    for (std::size_t i = 1; i < node.children().size(); ++i) {
      arguments.push_back(write(node.child(i)));
    }
    return called(node, std::move(arguments));
  }

  Term called(const ex::Node& node, std::vector<Term> arguments) {
    const std::string& name = node.child(0).text();
    if (const auto op = operator_of(name); op && arguments.size() == 2) {
      return binary(*op, std::move(arguments[0]), std::move(arguments[1]), number_of(node.child(2)));
    }
    if (name == "ternary_fcn" && arguments.size() == 3) {
      return choice(std::move(arguments));
    }
    const WrittenFunction* function = find_written_function(name, arguments.size());
    if (function == nullptr) {
      throw NotWritable{"netlists have no function for '" + name + "' of " + std::to_string(arguments.size()) +
                        " argument(s)"};
    }
    return applied(*function, std::move(arguments));
  }

  /// Its unit must be known whatever is chosen.
  static Term choice(std::vector<Term> arguments) {
    const AbstractExpr unit = arguments[1].unit;
    const bool both = (unit.id() != 0) == (arguments[2].unit.id() != 0);
    if (!both || (unit.id() != 0 && !units2::core::commensurable(unit, arguments[2].unit))) {
      throw NotWritable{"it chooses between values of different units"};
    }
    return {"ternary_fcn(" + arguments[0].text + "," + arguments[1].text + "," + arguments[2].text + ")",
            TermLevel::atom, unit};
  }

  const ParameterNameLookup& m_names;
};

}  // namespace

std::optional<WrittenExpression> write_expression(const ex::Node& tree, const AbstractExpr& bound,
                                                  const AbstractExpr& told, const ParameterNameLookup& names,
                                                  std::string& problem) {
  try {
    Term term = Writer(names).write(tree);
    const bool is_bare = term.unit.id() == 0;
    const AbstractExpr unit = bound.id() != 0 ? bound : term.unit;
    if (is_bare && told.id() != 0 && bound.id() != 0) {
      const double offset = units2::core::convert(0, bound, told);
      term = scaled(std::move(term), units2::core::convert(1, bound, told) - offset, offset);
    } else {
      term = told_in(with_unit(std::move(term), bound), told);
    }
    const std::optional<double> number = number_of(tree);
    const bool is_number = number && term.text == number_text(*number);
    return WrittenExpression{std::move(term.text), is_number, unit};
  } catch (const NotWritable& refused) {
    problem = refused.reason;
  } catch (const kmf::Exception& refused) {
    problem = refused.what();
  }
  return std::nullopt;
}

std::string card_value(const WrittenExpression& expression) {
  return expression.is_number ? expression.text : "{" + expression.text + "}";
}

}  // namespace kinemo::formats::spice
