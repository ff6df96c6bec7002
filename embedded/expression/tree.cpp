#include "embedded/expression/tree.hpp"

#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

namespace embedded::expression {

namespace {

struct OperatorRow {
  std::string_view symbol;
  Precedence precedence;
};

// In the order of `Operator`.
constexpr std::array<OperatorRow, 23> operator_table{{
    {"||", Precedence::or_else},        {"&&", Precedence::and_also},       {"|", Precedence::element_or},
    {"&", Precedence::element_and},     {"==", Precedence::comparison},     {"~=", Precedence::comparison},
    {"<", Precedence::comparison},      {"<=", Precedence::comparison},     {">", Precedence::comparison},
    {">=", Precedence::comparison},     {"+", Precedence::additive},        {"-", Precedence::additive},
    {"*", Precedence::multiplicative},  {"/", Precedence::multiplicative},  {"\\", Precedence::multiplicative},
    {".*", Precedence::multiplicative}, {"./", Precedence::multiplicative}, {".\\", Precedence::multiplicative},
    {"~", Precedence::unary},           {"^", Precedence::power},           {".^", Precedence::power},
    {".'", Precedence::power},          {"'", Precedence::power},
}};

Tree make(Kind kind, Node::Contents contents, std::vector<Tree> children, std::size_t offset) {
  return std::make_shared<const Node>(kind, std::move(contents), std::move(children), offset);
}

bool is_chain_of(const Node& node, Precedence level) {
  return node.kind() == Kind::chain && precedence(node.op()) == level;
}

std::size_t combine(std::size_t seed, std::size_t value) {
  return seed ^ (value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2));
}

std::size_t hash_contents(const Node::Contents& contents) {
  if (const auto* number = std::get_if<double>(&contents)) return std::hash<double>()(*number);
  if (const auto* text = std::get_if<std::string>(&contents)) return std::hash<std::string>()(*text);
  std::size_t result = contents.index();
  if (const auto* operators = std::get_if<std::vector<Operator>>(&contents)) {
    for (const Operator op : *operators) result = combine(result, static_cast<std::size_t>(op));
  }
  return result;
}

std::size_t hash_node(const Node& node) {
  std::size_t result = combine(static_cast<std::size_t>(node.kind()), hash_contents(node.contents()));
  for (const Tree& child : node.children()) result = combine(result, hash_node(*child));
  return result;
}

bool equal_nodes(const Node& a, const Node& b) {
  if (&a == &b) return true;
  return a.kind() == b.kind() && a.height() == b.height() && a.contents() == b.contents() &&
         std::equal(a.children().begin(), a.children().end(), b.children().begin(), b.children().end(),
                    [](const Tree& x, const Tree& y) { return equal_nodes(*x, *y); });
}

}  // namespace

Node::Node(Kind kind, Contents contents, std::vector<Tree> children, std::size_t offset)
    : kind_(kind),
      height_(1),
      offset_(static_cast<std::uint32_t>(offset)),
      contents_(std::move(contents)),
      children_(std::move(children)) {
  std::size_t below = 0;
  for (const Tree& child : children_) below = std::max(below, child->height());
  if (below >= height_limit) {
    kmf::throw_message("kinemo:scripting:expression", "TreeTooHigh", std::to_string(height_limit));
  }
  height_ = static_cast<std::uint16_t>(below + 1);
}

Tree make_number(double value, std::size_t offset) {
  if (std::isnan(value)) return make_name("nan", offset);
  if (std::signbit(value)) return make_unary(Operator::minus, make(Kind::number, -value, {}, offset), offset);
  return make(Kind::number, value, {}, offset);
}

Tree make_imaginary(double value, std::size_t offset) {
  if (std::isnan(value)) return make_binary(Operator::times, make_name("nan", offset), make_imaginary(1, offset));
  if (std::signbit(value)) return make_unary(Operator::minus, make(Kind::imaginary, -value, {}, offset), offset);
  return make(Kind::imaginary, value, {}, offset);
}

Tree make_text(std::string utf8, std::size_t offset) {
  return make(Kind::text, std::move(utf8), {}, offset);
}

Tree make_name(std::string name, std::size_t offset) {
  return make(Kind::name, std::move(name), {}, offset);
}

Tree make_unary(Operator op, Tree operand, std::size_t offset) {
  return make(Kind::unary, std::vector<Operator>{op}, {std::move(operand)}, offset);
}

Tree make_transpose(Operator op, Tree operand, std::size_t offset) {
  return make(Kind::transpose, std::vector<Operator>{op}, {std::move(operand)}, offset);
}

Tree make_binary(Operator op, const Tree& left, const Tree& right, std::size_t offset) {
  return make_chain({left, right}, {op}, offset);
}

Tree make_chain(std::vector<Tree> operands, std::vector<Operator> operators, std::size_t offset) {
  const Tree first = operands.front();
  if (is_chain_of(*first, precedence(operators.front()))) {
    operands.erase(operands.begin());
    operands.insert(operands.begin(), first->children().begin(), first->children().end());
    operators.insert(operators.begin(), first->operators().begin(), first->operators().end());
    offset = first->offset();
  }
  return make(Kind::chain, std::move(operators), std::move(operands), offset);
}

Tree make_index(const Tree& base, std::vector<Tree> arguments, std::size_t offset) {
  arguments.insert(arguments.begin(), base);
  return make(Kind::index, {}, std::move(arguments), offset);
}

Tree make_field(const Tree& base, std::string field, std::size_t offset) {
  return make(Kind::field, std::move(field), {base}, offset);
}

Tree make_node(Kind kind, std::vector<Tree> children, std::size_t offset) {
  return make(kind, {}, std::move(children), offset);
}

Tree make_node(Kind kind, std::string text, std::vector<Tree> children, std::size_t offset) {
  return make(kind, std::move(text), std::move(children), offset);
}

bool equal(const Tree& a, const Tree& b) {
  if (!a || !b) return a == b;
  return equal_nodes(*a, *b);
}

std::size_t hash(const Tree& tree) {
  return tree ? hash_node(*tree) : 0;
}

Precedence precedence(Operator op) noexcept {
  return operator_table[static_cast<std::size_t>(op)].precedence;
}

Precedence precedence(const Node& node) noexcept {
  switch (node.kind()) {
    case Kind::handle:
    case Kind::anonymous:
    case Kind::colon:
      return Precedence::loosest;
    case Kind::chain:
      return precedence(node.op());
    case Kind::range:
      return Precedence::range;
    case Kind::unary:
      return Precedence::unary;
    case Kind::transpose:
      return Precedence::power;
    default:
      return Precedence::postfix;
  }
}

std::string_view symbol(Operator op) noexcept {
  return operator_table[static_cast<std::size_t>(op)].symbol;
}

}  // namespace embedded::expression
