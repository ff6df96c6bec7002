#include "formats/spice/write_expression.hpp"

#include <array>
#include <cmath>
#include <vector>

#include "embedded/data/subset.hpp"
#include "embedded/expression/print.hpp"
#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

namespace ex = embedded::expression;

namespace {

/// Functions are textual here, so arguments that stand twice in a form can make a text grow without bounds.
constexpr std::size_t longest_text = 100'000;

/// How tightly a text binds.
enum class Level { choice, or_else, and_also, comparison, additive, multiplicative, sign, atom };

struct Part {
  std::string text;
  Level level = Level::atom;
};

struct Symbol {
  std::string_view text;
  Level level;
};

/// Empty for operators that have no symbol of their own in netlists.
Symbol symbol_of(ex::Operator op) {
  switch (op) {
    case ex::Operator::or_else:
    case ex::Operator::element_or:
      return {"||", Level::or_else};
    case ex::Operator::and_also:
    case ex::Operator::element_and:
      return {"&&", Level::and_also};
    case ex::Operator::equal:
      return {"==", Level::comparison};
    case ex::Operator::not_equal:
      return {"!=", Level::comparison};
    case ex::Operator::less:
      return {"<", Level::comparison};
    case ex::Operator::less_equal:
      return {"<=", Level::comparison};
    case ex::Operator::greater:
      return {">", Level::comparison};
    case ex::Operator::greater_equal:
      return {">=", Level::comparison};
    case ex::Operator::plus:
      return {"+", Level::additive};
    case ex::Operator::minus:
      return {"-", Level::additive};
    case ex::Operator::times:
    case ex::Operator::element_times:
      return {"*", Level::multiplicative};
    case ex::Operator::divide:
    case ex::Operator::element_divide:
      return {"/", Level::multiplicative};
    default:
      return {{}, Level::atom};
  }
}

std::string bracketed(Part part) {
  return "(" + std::move(part.text) + ")";
}

/// Operators of one level are read from the left; comparisons and signs are bracketed wherever they are operands.
std::string operand(Part part, Level level, bool is_first) {
  const bool chains = is_first && level != Level::comparison;
  const bool fits = part.level == Level::sign ? false : chains ? part.level >= level : part.level > level;
  return fits ? std::move(part.text) : bracketed(std::move(part));
}

class Writer {
 public:
  Writer(const ParameterNameLookup& names, std::string& problem) : m_names(names), m_problem(problem) {}

  /// Trees are never higher than `ex::height_limit`.
  Part write(const ex::Node& node) {
    Part part = node.kind() == ex::Kind::number ? number(node.number()) : composed(node);
    if (part.text.size() > longest_text) {
      fail("it gets too long");
      part.text.clear();
    }
    return part;
  }

 private:
  /// Keeps the first problem. What is written behind it doesn't matter any more.
  Part fail(const std::string& problem) {
    if (m_problem.empty()) {
      m_problem = problem;
    }
    return {"0"};
  }

  Part number(double value) {
    return std::isfinite(value) ? Part{number_text(value), value < 0 ? Level::sign : Level::atom}
                                : fail("it has a number that isn't finite");
  }

  Part composed(const ex::Node& node) {
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
      default:
        return fail("'" + ex::print(node) + "' can't be said in a netlist");
    }
  }

  Part name(const std::string& name) {
    std::string problem;
    if (const auto parameter = m_names(name, problem)) {
      return {*parameter};
    }
    return problem.empty() ? constant(name) : fail(problem);
  }

  Part constant(const std::string& name) {
    static constexpr std::array<std::pair<std::string_view, double>, 4> values{
        {{"pi", 3.141592653589793}, {"eps", 2.220446049250313e-16}, {"true", 1}, {"false", 0}}};
    for (const auto& [known, value] : values) {
      if (name == known) {
        return number(value);
      }
    }
    return fail(data2::core::is_constant(name) ? "it has a number that isn't finite"
                                               : "'" + name + "' is no parameter that is written");
  }

  Part unary(const ex::Node& node) {
    Part part = write(node.child(0));
    if (node.op() == ex::Operator::plus) {
      return part;
    }
    const char* symbol = node.op() == ex::Operator::not_ ? "!" : "-";
    return {symbol + (part.level == Level::atom ? std::move(part.text) : bracketed(std::move(part))), Level::sign};
  }

  Part chain(const ex::Node& node) {
    Part part = write(node.child(0));
    for (std::size_t i = 0; i < node.operators().size() && m_problem.empty(); ++i) {
      part = binary(node.operators()[i], std::move(part), write(node.child(i + 1)));
    }
    return part;
  }

  Part binary(ex::Operator op, Part left, Part right) {
    if (op == ex::Operator::left_divide || op == ex::Operator::element_left_divide) {
      return binary(ex::Operator::divide, std::move(right), std::move(left));
    }
    if (op == ex::Operator::power || op == ex::Operator::element_power) {
      return {"pow(" + left.text + "," + right.text + ")"};
    }
    const Symbol symbol = symbol_of(op);
    std::string text = operand(std::move(left), symbol.level, true);
    text += symbol.text;
    text += operand(std::move(right), symbol.level, false);
    return {std::move(text), symbol.level};
  }

  /// A matrix of one number is that number.
  Part matrix(const ex::Node& node) {
    const bool is_one = node.children().size() == 1 && node.child(0).children().size() == 1;
    return is_one ? write(node.child(0).child(0)) : fail("it has a matrix, and parameters of netlists are numbers");
  }

  Part call(const ex::Node& node) {
    const std::string& name = node.child(0).text();
    const std::size_t count = node.children().size() - 1;
    std::string problem;
    if (node.child(0).kind() != ex::Kind::name || m_names(name, problem) || !problem.empty()) {
      return fail("it takes an element of '" + ex::print(node.child(0)) + "', and parameters of netlists are numbers");
    }
    const WrittenFunction* function = find_written_function(name, count);
    if (function == nullptr) {
      return fail("netlists have no function for '" + name + "' of " + std::to_string(count) + " argument(s)");
    }
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < count; ++i) {
      arguments.push_back(write(node.child(i + 1)).text);
    }
    return filled(function->form, arguments);
  }

  static Part filled(std::string_view form, const std::vector<std::string>& arguments) {
    Part part;
    for (std::size_t at = 0; at < form.size(); ++at) {
      if (form[at] == '$') {
        part.text += arguments[static_cast<std::size_t>(form[++at] - '1')];
      } else {
        part.text += form[at];
      }
    }
    return part;
  }

  const ParameterNameLookup& m_names;
  std::string& m_problem;
};

bool is_plain_number(const ex::Node& tree) {
  const bool is_negative = tree.kind() == ex::Kind::unary && tree.op() == ex::Operator::minus;
  return (is_negative ? tree.child(0) : tree).kind() == ex::Kind::number;
}

}  // namespace

std::optional<WrittenExpression> write_expression(const ex::Node& tree, const ParameterNameLookup& names,
                                                  std::string& problem) {
  problem.clear();
  Part part = Writer(names, problem).write(tree);
  if (!problem.empty()) {
    return std::nullopt;
  }
  return WrittenExpression{std::move(part.text), is_plain_number(tree)};
}

std::string card_value(const WrittenExpression& expression) {
  return expression.is_number ? expression.text : "{" + expression.text + "}";
}

}  // namespace kinemo::formats::spice
