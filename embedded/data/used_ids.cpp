#include "embedded/data/expr_node.hpp"
#include "embedded/expression/walk.hpp"

namespace data2::core {

namespace ex = embedded::expression;

boost::unordered_set<kmf::VnId> UsedIds::operator()(const Expr& expression) const {
  boost::unordered_set<kmf::VnId> ids;
  const ex::Node* tree = unbound(expression);
  if (tree == nullptr) return ids;
  ex::visit_free_names(*tree, [&](const ex::Node& name, ex::NameUse use) {
    if (use != ex::NameUse::handle && kmf::VnId::isLegal(name.text())) ids.insert(kmf::VnId(name.text()));
  });
  return ids;
}

bool contains_dot_referencing(const Expr& expression) {
  const ex::Node* tree = unbound(expression);
  bool found = false;
  if (tree == nullptr) return found;
  ex::visit(*tree, [&](const ex::Node& node) {
    found = found || node.kind() == ex::Kind::field || node.kind() == ex::Kind::dynamic_field;
    return !found;
  });
  return found;
}

}  // namespace data2::core
