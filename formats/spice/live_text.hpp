// The texts of cards with live values: in place of each expression stands `{k}`, and element k of the row beside the
// text is the expression, counted from 1. An expression of the running circuit stays in the text in braces of its own,
// with such a mark for each parameter in it. Constants are numbers in the text itself.
#pragma once

#include <string>
#include <vector>

#include "formats/spice/live_expressions.hpp"
#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

struct LiveText {
  std::string text;
  std::vector<Expression> values;  ///< in names of the scope that it was told for
  bool has_fixed = false;          ///< a parameter in it is fixed to the number that it has now
};

/// Pieces of a scope at depth `from`, told for the scope at depth `at`. The one may lie in the other.
LiveText live_text(const TextPieces& pieces, const ParameterScopes& scopes, std::size_t from, std::size_t at);

/// Whether the names in the values, told for the scope at depth `from`, mean the same in the scope at depth `at`.
bool means_the_same(const LiveText& text, const ParameterScopes& scopes, std::size_t from, std::size_t at);

}  // namespace kinemo::formats::spice
