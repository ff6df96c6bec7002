#pragma once

// The immutable tree of the expression language. Nodes are shared: a tree is a shared pointer to its root, lives as
// long as any tree that holds it, and may stand in several trees.
//
// Canonical form, by which equal meaning of the same writing gives equal trees:
//   - operators of one precedence that follow each other make one flat chain (a + b - c is a chain of three), and the
//     first operand of a chain is never a chain of the same precedence; so a sum of a million terms is two levels high
//   - a number is never negative: -2 is a unary minus of 2
// No tree is higher than `height_limit`, so that recursive walks are safe.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace embedded::expression {

/// What a node is; in brackets its contents and children.
enum class Kind : std::uint8_t {
  number,         ///< [number]
  imaginary,      ///< [number] times the imaginary unit
  text,           ///< [text] characters, UTF-8
  name,           ///< [text] a variable or a function without arguments
  colon,          ///< a bare ":" as an argument: all elements
  end,            ///< the last element of what is indexed
  matrix,         ///< children: rows
  cell,           ///< children: rows
  row,            ///< children: elements; only in `matrix` and `cell`
  unary,          ///< [one operator: plus, minus or not_] child: operand
  chain,          ///< [operators of one precedence, one less than children] children: operands, from the left
  range,          ///< children: first, last or first, step, last
  transpose,      ///< [one operator: transpose or conjugate_transpose] child: operand
  index,          ///< a(b, c): children: what is indexed or called, arguments
  cell_index,     ///< a{b, c}: children as in `index`
  field,          ///< [text: field] a.b: child: a
  dynamic_field,  ///< a.(b): children: a, b
  handle,         ///< [text: name] @name
  anonymous       ///< @(a, b) body: children: parameters as names ("~" for one that is ignored), body last
};

// clang-format off
enum class Operator : std::uint8_t {
  or_else, and_also, element_or, element_and,                                      ///< || && | &
  equal, not_equal, less, less_equal, greater, greater_equal,                      ///< == ~= < <= > >=
  plus, minus,                                                                     ///< + -
  times, divide, left_divide, element_times, element_divide, element_left_divide,  ///< "*", "/", "\", and with dots
  not_,                                                                            ///< ~
  power, element_power, transpose, conjugate_transpose                             ///< ^ .^ .' '
};
// clang-format on

/// How tightly an operator or a node binds, from loose to tight.
enum class Precedence : std::uint8_t {
  loosest,
  or_else,
  and_also,
  element_or,
  element_and,
  comparison,
  range,
  additive,
  multiplicative,
  unary,
  power,
  postfix
};

class Node;
using Tree = std::shared_ptr<const Node>;

constexpr std::size_t height_limit = 1000;

class Node {
 public:
  using Contents = std::variant<std::monostate, double, std::string, std::vector<Operator>>;

  /// Prefer the `make_…` functions, which keep the canonical form.
  Node(Kind kind, Contents contents, std::vector<Tree> children, std::size_t offset);

  Kind kind() const noexcept { return kind_; }
  /// Place in the parsed text, in bytes from its beginning; of an operator node, that of its first operator.
  std::size_t offset() const noexcept { return offset_; }
  /// Levels below and with this node: 1 for a leaf.
  std::size_t height() const noexcept { return height_; }

  double number() const { return std::get<double>(contents_); }
  const std::string& text() const { return std::get<std::string>(contents_); }
  const std::vector<Operator>& operators() const { return std::get<std::vector<Operator>>(contents_); }
  /// The one operator of a unary node or a transposition, the first of a chain.
  Operator op() const { return operators().front(); }
  const std::vector<Tree>& children() const noexcept { return children_; }
  const Node& child(std::size_t i) const { return *children_[i]; }
  const Contents& contents() const noexcept { return contents_; }

 private:
  Kind kind_;
  std::uint16_t height_;
  std::uint32_t offset_;
  Contents contents_;
  std::vector<Tree> children_;
};

// --- making; all raise "kinemo:scripting:expression" "TreeTooHigh" (limit) where a tree would get higher than allowed

/// Of a negative value a unary minus; of one that isn't a number the name "nan".
Tree make_number(double value, std::size_t offset = 0);
Tree make_imaginary(double value, std::size_t offset = 0);
Tree make_text(std::string utf8, std::size_t offset = 0);
Tree make_name(std::string name, std::size_t offset = 0);
Tree make_unary(Operator op, Tree operand, std::size_t offset = 0);
Tree make_transpose(Operator op, Tree operand, std::size_t offset = 0);
Tree make_binary(Operator op, const Tree& left, const Tree& right, std::size_t offset = 0);
/// `operators` are all of one precedence and one less than `operands`.
Tree make_chain(std::vector<Tree> operands, std::vector<Operator> operators, std::size_t offset = 0);
/// A call or an indexing `base(arguments…)`.
Tree make_index(const Tree& base, std::vector<Tree> arguments, std::size_t offset = 0);
Tree make_field(const Tree& base, std::string field, std::size_t offset = 0);
/// A node of any kind without operators.
Tree make_node(Kind kind, std::vector<Tree> children, std::size_t offset = 0);
Tree make_node(Kind kind, std::string text, std::vector<Tree> children, std::size_t offset = 0);

// --- reading

/// Same kinds, contents and children; places don't count. Shared subtrees are compared by identity first.
bool equal(const Tree& a, const Tree& b);
/// Equal trees have equal hashes.
std::size_t hash(const Tree& tree);
Precedence precedence(Operator op) noexcept;
Precedence precedence(const Node& node) noexcept;
/// As it is written: "+", ".*", "~=".
std::string_view symbol(Operator op) noexcept;

}  // namespace embedded::expression
