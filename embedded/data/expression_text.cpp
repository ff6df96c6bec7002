#include "embedded/data/expression_text.hpp"

#include "embedded/data/expr_node.hpp"

#include <sstream>

namespace data2::core {

namespace {

Expr unbound_once(const Expr& expression) {
  if (!expression.node()) return expression;
  const embedded::expression::Tree& whole = expression.node()->tree;
  const Binding binding = binding_of(*whole);
  if (binding.expression == nullptr) return expression;
  return make_expr(embedded::expression::Tree(whole, binding.expression));
}

}  // namespace

std::string plain_text(const Expr& expression) {
  std::ostringstream text;
  out(text, 0, 0, unbound_once(expression));
  return text.str();
}

std::string expression_text(const Expr& expression) {
  const std::string text = plain_text(expression);
  const std::string unit = bound_unit(expression).text();
  if (unit.empty() || unit == "1") return text;
  return (kmf::VnId::isLegal(text) ? text : "(" + text + ")") + " " + unit;
}

}  // namespace data2::core
