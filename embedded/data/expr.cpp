#include "embedded/data/expr_node.hpp"

#include <unordered_map>

namespace data2::core {

namespace ex = embedded::expression;

namespace {

constexpr const char* package = "kinemo";
constexpr const char* value_class = "Value";

bool is_value_class(const ex::Node& node) {
  return node.kind() == ex::Kind::field && node.text() == value_class && node.child(0).kind() == ex::Kind::name &&
         node.child(0).text() == package;
}

/// The text of a unit as a tree. A model binds few units to many expressions, which share their trees.
const ex::Tree& unit_tree(const std::string& unit) {
  static auto& known = *new std::unordered_map<std::string, ex::Tree>;
  constexpr std::size_t most_units = 1000;
  if (known.size() > most_units) known.clear();
  ex::Tree& tree = known[unit];
  if (!tree) tree = ex::make_text(unit);
  return tree;
}

}  // namespace

Binding binding_of(const ex::Node& tree) {
  if (tree.kind() != ex::Kind::index || tree.children().size() != 3 || !is_value_class(tree.child(0))) return {};
  if (tree.child(2).kind() != ex::Kind::text) return {};
  return {&tree.child(1), &tree.child(2).text()};
}

ex::Tree bind(const ex::Tree& expression, const std::string& unit) {
  static const ex::Tree& maker = *new ex::Tree(ex::make_field(ex::make_name(package), value_class));
  return ex::make_index(maker, {expression, unit_tree(unit)});
}

const ex::Node* unbound(const Expr& expression) {
  if (!expression.node()) return nullptr;
  const ex::Node* node = expression.node()->tree.get();
  for (Binding binding = binding_of(*node); binding.expression != nullptr; binding = binding_of(*node)) {
    node = binding.expression;
  }
  return node;
}

Expr without_unit(const Expr& expression) {
  const ex::Node* inner = unbound(expression);
  if (inner == nullptr || inner == expression.node()->tree.get()) return expression;
  const ex::Tree tree(expression.node()->tree, inner);  // lives as long as the whole, which holds it
  return Expr(std::make_shared<const ExprNode>(tree, units2::core::ExprString()));
}

Expr make_expr(const ex::Tree& tree) {
  const Binding binding = binding_of(*tree);
  units2::core::ExprString unit;
  if (binding.unit != nullptr) unit = units2::core::parse(*binding.unit);
  return Expr(std::make_shared<const ExprNode>(tree, unit));
}

Expr::Expr() = default;

Expr::Expr(const UnitBindExpr& bound) : node_(bound.expression().node()) {
  if (!node_ || bound.unit().unit().id() == 0) return;
  node_ = std::make_shared<const ExprNode>(bind(node_->tree, bound.unit().text()), bound.unit());
}

bool operator==(const Expr& a, const Expr& b) {
  if (a.node_ == b.node_) return true;
  return a.node_ && b.node_ && ex::equal(a.node_->tree, b.node_->tree);
}

UnitBindExpr::UnitBindExpr(const Expr& expression, const units2::core::ExprString& unit)
    : expression_(expression), unit_(unit) {}

units2::core::ExprString bound_unit(const Expr& expression) {
  return expression.node() ? expression.node()->unit : units2::core::ExprString();
}

}  // namespace data2::core
