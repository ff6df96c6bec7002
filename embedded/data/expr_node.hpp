#pragma once

// What an expression of the data library holds: a tree of the shared expression language. A bound unit is part of the
// tree: the expression x in metres is the tree of `kinemo.Value(x, 'm')`, which the scripting language reads as the
// making of a value with a unit. So a bound expression is written, read back, compared and shared like any other.

#include "embedded/expression/tree.hpp"
#include "platform/data/data.hpp"

namespace data2::core {

class ExprNode {
 public:
  ExprNode(embedded::expression::Tree whole, const units2::core::ExprString& bound)
      : tree(std::move(whole)), unit(bound) {}

  embedded::expression::Tree tree;
  units2::core::ExprString unit;  ///< bound at the root; the empty one where none is
};

/// What a tree binds at its root: the expression and the text of its unit. Null where nothing is bound.
struct Binding {
  const embedded::expression::Node* expression = nullptr;
  const std::string* unit = nullptr;
};
Binding binding_of(const embedded::expression::Node& tree);
embedded::expression::Tree bind(const embedded::expression::Tree& expression, const std::string& unit);

/// The expression below all bindings at the root; null for an expression without contents.
const embedded::expression::Node* unbound(const Expr& expression);

/// An expression of a tree; the unit of its binding must be a legal one.
Expr make_expr(const embedded::expression::Tree& tree);

}  // namespace data2::core
