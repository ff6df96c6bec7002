#pragma once

// Reading parts of arrays, and joining arrays to larger ones.

#include "embedded/scripting_runtime/value.hpp"

#include <cstddef>
#include <optional>
#include <vector>

namespace embedded::scripting_runtime {

/// One subscript: a value, or none for ":" that stands for all.
using Subscript = std::optional<Value>;

/// array(i, j, …) of any class.
/// @throws "IndexOutOfRange" (index, count), "InvalidIndex" (index)
Value indexed(const cvArray_tag* array, const std::vector<Subscript>& subscripts);
/// The elements that array{i, j, …} gives, each an array of its own. @throws "NotCell" (class name)
std::vector<Value> cell_contents(const cvArray_tag* array, const std::vector<Subscript>& subscripts);
/// What `end` means in subscript `position` of `count`.
std::size_t end_of(const cvArray_tag* array, std::size_t position, std::size_t count);

/// [a, b, …] and [a; b; …]. Empty 0 by 0 arrays are left out.
/// @throws "ConcatenationMismatch" (shape, shape), "CannotConcatenate" (class, class)
Value joined_in_row(std::vector<Value> parts);
Value joined_in_column(std::vector<Value> parts);
/// A cell array of one row.
Value cell_row(std::vector<Value> parts);

}  // namespace embedded::scripting_runtime
