#pragma once

// Visits of a tree.

#include "embedded/expression/tree.hpp"

#include <functional>
#include <set>
#include <string>

namespace embedded::expression {

/// Calls `visitor(node)` for every node, parents first, children from the left. A visitor that returns false for a node
/// leaves out what is below it.
template <class Visitor>
void visit(const Node& node, Visitor&& visitor) {
  if (!visitor(node)) return;
  for (const Tree& child : node.children()) visit(*child, visitor);
}

enum class NameUse {
  value,   ///< read as a variable, or called without arguments
  called,  ///< stands before round brackets: indexed when it is a variable, called otherwise
  handle   ///< behind @
};

/// Calls `visitor(node, use)` for each place of a free name, from the left. Parameters of anonymous functions aren't
/// free in their bodies, fields aren't names.
void visit_free_names(const Node& tree, const std::function<void(const Node&, NameUse)>& visitor);

/// The free names of a tree that are read as values; those before round brackets too when `with_called`.
std::set<std::string> used_names(const Node& tree, bool with_called = false);

}  // namespace embedded::expression
