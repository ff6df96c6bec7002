#pragma once

// The part of the expression language whose values are arrays of real numbers, whatever the names stand for: numbers,
// names, matrices, operators, indexing by numbers, fields, and calls of functions that take numbers and give numbers.

#include "embedded/expression/tree.hpp"

#include <string_view>

namespace data2::core {

/// Whether the name stands for a number in every workspace, unless a variable hides it.
bool is_constant(std::string_view name);
bool is_in_subset(const embedded::expression::Node& tree);

}  // namespace data2::core
