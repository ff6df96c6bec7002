#include <algorithm>
#include <array>
#include <cctype>

#include "formats/spice/card.hpp"
#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

namespace {

/// Operators that may wait for their operands at once; bounds the nesting of what is read.
constexpr std::size_t deepest_nesting = 900;

struct OperatorRow {
  std::string_view symbol;
  Operation operation;
  int precedence;
};

constexpr int unary_precedence = 6;

/// Longer symbols first.
constexpr std::array<OperatorRow, 18> operator_rows{{
    {"**", Operation::power, 7},
    {"&&", Operation::logical_and, 2},
    {"||", Operation::logical_or, 1},
    {"==", Operation::equal, 3},
    {"!=", Operation::not_equal, 3},
    {"<>", Operation::not_equal, 3},
    {"<=", Operation::less_equal, 3},
    {">=", Operation::greater_equal, 3},
    {"^", Operation::power, 7},
    {"*", Operation::multiply, 5},
    {"/", Operation::divide, 5},
    {"%", Operation::remainder, 5},
    {"\\", Operation::integer_divide, 5},
    {"+", Operation::add, 4},
    {"-", Operation::subtract, 4},
    {"<", Operation::less, 3},
    {">", Operation::greater, 3},
    {"=", Operation::equal, 3},
}};

bool is_name_start(char c) {
  return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '@' || c == '$';
}
bool is_name_part(char c) {
  return is_name_start(c) || (c >= '0' && c <= '9') || c == '.' || c == '#' || c == '[' || c == ']' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool is_probe_function(std::string_view name) {
  return name == "v" || name == "i";
}
bool is_probe_name(std::string_view name) {
  return name == "time" || name == "temper" || name == "hertz" || (!name.empty() && name.front() == '@');
}

/// An operator precedence parser with a stack of its own: operands go to the result at once, operators wait in
/// `m_waiting` until what stands behind them binds less tightly.
class ExpressionParser {
 public:
  ExpressionParser(std::string_view text, ExpressionError& error) : m_text(text), m_error(error) {}

  std::optional<Expression> parse() {
    for (skip_blanks(); m_at < m_text.size() && !m_failed; skip_blanks()) {
      m_wants_operand ? read_operand() : read_operator();
    }
    if (!m_failed && m_wants_operand) {
      fail(m_steps.empty() && m_waiting.empty() ? "the expression is empty"
                                                : "the expression ends where a value is needed");
    }
    if (!m_failed) {
      reduce_to_opening();
    }
    if (!m_failed && !m_waiting.empty()) {
      m_at = m_waiting.back().offset;
      fail(m_waiting.back().kind == Waiting::question ? "'?' without its ':'" : "'(' without its ')'");
    }
    return m_failed ? std::nullopt : std::optional<Expression>(Expression(std::move(m_steps)));
  }

 private:
  struct Waiting {
    enum Kind { unary, binary, parenthesis, call, question, colon } kind;
    Operation operation;
    int precedence;
    std::size_t offset;
    std::string name;
    std::uint32_t arguments;
  };

  void fail(std::string text) {
    m_error = {std::move(text), std::min(m_at, m_text.size())};
    m_failed = true;
  }

  void skip_blanks() {
    while (m_at < m_text.size() && std::isspace(static_cast<unsigned char>(m_text[m_at])) != 0) {
      ++m_at;
    }
  }

  void emit(Operation operation, std::uint32_t operands, std::size_t offset, std::string text = {}, double number = 0) {
    m_steps.push_back({operation, operands, number, std::move(text), offset});
    if (m_steps.size() > longest_expression) {
      fail("the expression is too long");
    }
  }

  void wait(Waiting::Kind kind, Operation operation = Operation::number, int precedence = 0, std::string name = {}) {
    m_waiting.push_back({kind, operation, precedence, m_at, std::move(name), 0});
    if (m_waiting.size() > deepest_nesting) {
      fail("the expression is nested too deeply");
    }
  }

  // --- operands

  void read_operand() {
    const char c = m_text[m_at];
    std::size_t length = 0;
    if (const auto number = parse_number_prefix(m_text.substr(m_at), length, true)) {
      read_number(*number, length);
    } else if (is_name_start(c)) {
      read_name();
    } else if (c == '(' || c == '{') {
      wait(Waiting::parenthesis);
      ++m_at;
    } else if (c == '-' || c == '!') {
      wait(Waiting::unary, c == '-' ? Operation::negate : Operation::logical_not, unary_precedence);
      ++m_at;
    } else if (c == '+') {
      ++m_at;
    } else if (c == ')' && !m_waiting.empty() && m_waiting.back().kind == Waiting::call &&
               m_waiting.back().arguments == 0) {
      close_call();
    } else {
      fail("'" + std::string(first_character(m_text.substr(m_at))) + "' where a value is needed");
    }
  }

  void read_number(double value, std::size_t length) {
    emit(Operation::number, 0, m_at, {}, value);
    m_at += length;
    if (m_at < m_text.size() && is_name_part(m_text[m_at])) {
      fail("a number can't go on with '" + std::string(first_character(m_text.substr(m_at))) + "'");
    }
    m_wants_operand = false;
  }

  void read_name() {
    const std::size_t begin = m_at;
    while (m_at < m_text.size() && is_name_part(m_text[m_at])) {
      ++m_at;
    }
    std::string name(m_text.substr(begin, m_at - begin));
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    skip_blanks();
    const bool is_call = m_at < m_text.size() && m_text[m_at] == '(';
    if (is_call && is_probe_function(name)) {
      read_probe(begin);
    } else if (is_call) {
      wait(Waiting::call, Operation::call, 0, std::move(name));
      m_waiting.back().offset = begin;
      ++m_at;
    } else {
      const Operation operation = is_probe_name(name) ? Operation::probe : Operation::name;
      emit(operation, 0, begin, std::move(name));
      m_wants_operand = false;
    }
  }

  /// v(node, node) or i(element): names that are no expressions.
  void read_probe(std::size_t begin) {
    const std::size_t close = m_text.find(')', m_at);
    if (close == std::string_view::npos) {
      fail("'(' without its ')'");
      return;
    }
    m_at = close + 1;
    emit(Operation::probe, 0, begin, std::string(m_text.substr(begin, m_at - begin)));
    m_wants_operand = false;
  }

  // --- operators

  void read_operator() {
    switch (m_text[m_at]) {
      case ')':
      case '}':
        close();
        return;
      case ',':
        next_argument();
        return;
      case '?':
        reduce_operators();
        wait(Waiting::question);
        break;
      case ':':
        alternative();
        break;
      default:
        read_binary();
        return;
    }
    ++m_at;
    m_wants_operand = true;
  }

  void read_binary() {
    const auto row = std::find_if(operator_rows.begin(), operator_rows.end(), [&](const OperatorRow& candidate) {
      return m_text.substr(m_at, candidate.symbol.size()) == candidate.symbol;
    });
    if (row == operator_rows.end()) {
      fail("'" + std::string(first_character(m_text.substr(m_at))) + "' where an operator is needed");
      return;
    }
    while (!m_waiting.empty() && m_waiting.back().precedence >= row->precedence) {
      reduce();
    }
    wait(Waiting::binary, row->operation, row->precedence);
    m_at += row->symbol.size();
    m_wants_operand = true;
  }

  void reduce() {
    const Waiting top = std::move(m_waiting.back());
    m_waiting.pop_back();
    if (top.kind == Waiting::colon) {
      emit(Operation::choose, 3, top.offset);
    } else {
      emit(top.operation, top.kind == Waiting::unary ? 1 : 2, top.offset);
    }
  }

  void reduce_operators() {
    while (!m_failed && !m_waiting.empty() &&
           (m_waiting.back().kind == Waiting::unary || m_waiting.back().kind == Waiting::binary)) {
      reduce();
    }
  }

  /// Up to the nearest parenthesis, call or '?' that is open.
  void reduce_to_opening() {
    for (reduce_operators(); !m_failed && !m_waiting.empty() && m_waiting.back().kind == Waiting::colon;) {
      reduce();
      reduce_operators();
    }
  }

  void alternative() {
    reduce_to_opening();
    if (m_waiting.empty() || m_waiting.back().kind != Waiting::question) {
      fail("':' without a '?' before it");
      return;
    }
    m_waiting.back().kind = Waiting::colon;
  }

  void close() {
    reduce_to_opening();
    if (m_waiting.empty() || m_waiting.back().kind == Waiting::question) {
      fail(m_waiting.empty() ? "')' without a '(' before it" : "'?' without its ':'");
    } else if (m_waiting.back().kind == Waiting::call) {
      ++m_waiting.back().arguments;
      close_call();
    } else {
      m_waiting.pop_back();
      ++m_at;
    }
  }

  void close_call() {
    emit(Operation::call, m_waiting.back().arguments, m_waiting.back().offset, m_waiting.back().name);
    m_waiting.pop_back();
    ++m_at;
    m_wants_operand = false;
  }

  void next_argument() {
    reduce_to_opening();
    if (m_waiting.empty() || m_waiting.back().kind != Waiting::call) {
      fail("',' outside of a function's arguments");
      return;
    }
    ++m_waiting.back().arguments;
    ++m_at;
    m_wants_operand = true;
  }

  std::string_view m_text;
  ExpressionError& m_error;
  std::size_t m_at = 0;
  bool m_wants_operand = true;
  bool m_failed = false;
  std::vector<ExpressionStep> m_steps;
  std::vector<Waiting> m_waiting;
};

}  // namespace

std::optional<Expression> parse_expression(std::string_view text, ExpressionError& error) {
  return ExpressionParser(text, error).parse();
}

Expression Expression::of_number(double value) {
  return Expression({{Operation::number, 0, value, {}, 0}});
}

bool Expression::has_probes() const {
  return std::any_of(m_steps.begin(), m_steps.end(),
                     [](const ExpressionStep& step) { return step.operation == Operation::probe; });
}

bool Expression::has_names() const {
  return std::any_of(m_steps.begin(), m_steps.end(),
                     [](const ExpressionStep& step) { return step.operation == Operation::name; });
}

}  // namespace kinemo::formats::spice
