#include <cmath>

#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

namespace {

constexpr int choice_level = 0;
constexpr int unary_level = 6;
constexpr int power_level = 7;
constexpr int atom_level = 9;

/// A text with how tightly its outermost operator binds; the same levels in both languages.
struct Part {
  std::string text;
  int level = atom_level;
};

struct BinarySymbols {
  int level;
  std::string_view netlist;
  std::string_view host;  ///< empty where the host has a function instead
};

BinarySymbols binary_symbols(Operation operation) {
  switch (operation) {
    case Operation::power:
      return {power_level, "**", "^"};
    case Operation::multiply:
      return {5, "*", "*"};
    case Operation::divide:
      return {5, "/", "/"};
    case Operation::integer_divide:
      return {5, "\\", ""};
    case Operation::remainder:
      return {5, "%", ""};
    case Operation::add:
      return {4, "+", " + "};
    case Operation::subtract:
      return {4, "-", " - "};
    case Operation::equal:
      return {3, "==", " == "};
    case Operation::not_equal:
      return {3, "!=", " ~= "};
    case Operation::less:
      return {3, "<", " < "};
    case Operation::less_equal:
      return {3, "<=", " <= "};
    case Operation::greater:
      return {3, ">", " > "};
    case Operation::greater_equal:
      return {3, ">=", " >= "};
    case Operation::logical_and:
      return {2, "&&", " && "};
    default:
      return {1, "||", " || "};
  }
}

/// The text in parentheses if it binds less tightly than `level`.
std::string bracketed(Part part, int level) {
  return part.level < level ? "(" + std::move(part.text) + ")" : std::move(part.text);
}

Part number_part(std::string text) {
  const bool negative = text.front() == '-';
  return {std::move(text), negative ? unary_level : atom_level};
}

/// Builds texts from the operands upward, in the host's language or in the netlist's.
class Printer {
 public:
  Printer(bool for_host, const NameTexts& names) : m_for_host(for_host), m_names(names) {}

  std::string print(const Expression& expression) {
    for (const ExpressionStep& step : expression.steps()) {
      const std::size_t first = m_stack.size() - step.operands;
      Part part = step.operands == 0 && step.operation != Operation::call ? leaf(step) : composed(step, first);
      m_stack.resize(first);
      m_stack.push_back(std::move(part));
    }
    return m_stack.empty() ? std::string() : std::move(m_stack.back().text);
  }

 private:
  Part leaf(const ExpressionStep& step) {
    if (step.operation == Operation::number) {
      return number_part(number_text(step.number));
    }
    const auto text = step.operation == Operation::name && m_names ? m_names(step.text) : std::nullopt;
    return text ? number_part(*text) : Part{step.text};
  }

  Part composed(const ExpressionStep& step, std::size_t first) {
    switch (step.operation) {
      case Operation::negate:
        return {"-" + bracketed(std::move(m_stack[first]), power_level), unary_level};
      case Operation::logical_not:
        return {(m_for_host ? "~" : "!") + bracketed(std::move(m_stack[first]), power_level), unary_level};
      case Operation::choose:
        return choice(first);
      case Operation::call:
        return call(step, first);
      default:
        return binary(step, first);
    }
  }

  Part choice(std::size_t first) {
    return m_for_host ? Part{"ternary_fcn(" + joined(first, ", ") + ")"}
                      : Part{bracketed(std::move(m_stack[first]), choice_level + 1) + "?" +
                                 bracketed(std::move(m_stack[first + 1]), choice_level + 1) + ":" +
                                 bracketed(std::move(m_stack[first + 2]), choice_level + 1),
                             choice_level};
  }

  /// The simulator takes the magnitude of the base, which makes a difference but for even exponents.
  Part host_power(std::size_t first) {
    const auto number_at = [this](std::size_t i) { return parse_number(m_stack[i].text); };
    const std::optional<double> base = number_at(first);
    const std::optional<double> exponent = number_at(first + 1);
    const bool is_positive = (base && *base >= 0) || (exponent && std::fmod(*exponent, 2) == 0);
    const std::string text =
        is_positive ? bracketed(std::move(m_stack[first]), power_level) : "abs(" + std::move(m_stack[first].text) + ")";
    return {text + "^" + bracketed(std::move(m_stack[first + 1]), atom_level), power_level};
  }

  Part binary(const ExpressionStep& step, std::size_t first) {
    if (m_for_host && step.operation == Operation::power) {
      return host_power(first);
    }
    const BinarySymbols symbols = binary_symbols(step.operation);
    if (m_for_host && symbols.host.empty()) {
      const bool divides = step.operation == Operation::integer_divide;
      return {divides ? "fix(" + bracketed(std::move(m_stack[first]), 5) + "/" +
                            bracketed(std::move(m_stack[first + 1]), power_level) + ")"
                      : "rem(" + joined(first, ", ") + ")"};
    }
    // operators of one level are read from the left, so only the right operand needs more
    std::string text = bracketed(std::move(m_stack[first]), symbols.level);
    text += m_for_host ? symbols.host : symbols.netlist;
    text += bracketed(std::move(m_stack[first + 1]), symbols.level < unary_level ? symbols.level + 1 : atom_level);
    return {std::move(text), symbols.level};
  }

  std::string joined(std::size_t first, std::string_view separator) const {
    std::string text;
    for (std::size_t i = first; i < m_stack.size(); ++i) {
      text += (i == first ? "" : std::string(separator)) + m_stack[i].text;
    }
    return text;
  }

  Part call(const ExpressionStep& step, std::size_t first) {
    const BuiltInFunction* function = m_for_host ? find_built_in_function(step.text) : nullptr;
    if (function == nullptr) {
      return {step.text + "(" + joined(first, ",") + ")"};
    }
    std::string text;
    for (std::size_t at = 0; at < function->host_form.size(); ++at) {
      if (function->host_form[at] != '$') {
        text += function->host_form[at];
        continue;
      }
      const char argument = function->host_form[++at];
      text += argument == '*' ? joined(first, ", ") : m_stack[first + static_cast<std::size_t>(argument - '1')].text;
    }
    const bool is_power = function->host_form.find('^') != std::string_view::npos;
    return {std::move(text), is_power ? power_level : atom_level};
  }

  bool m_for_host;
  const NameTexts& m_names;
  std::vector<Part> m_stack;
};

}  // namespace

std::string host_text(const Expression& expression) {
  return Printer(true, {}).print(expression);
}

std::string netlist_text(const Expression& expression, const NameTexts& names) {
  return Printer(false, names).print(expression);
}

}  // namespace kinemo::formats::spice
