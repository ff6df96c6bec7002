#pragma once

// Subscripts of places that are written or taken out: unlike those that are read, they may lie beyond the array.

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/indexing.hpp"

#include <cstddef>
#include <vector>

namespace embedded::scripting_runtime {

/// The places that a subscript names in one dimension.
struct Names {
  bool all = false;
  std::vector<std::size_t> at;
  std::size_t needed = 0;  ///< size of the dimension that holds them all
};

/// One for each subscript; without any, all of the array. @throws "InvalidIndex" (index)
std::vector<Names> all_names(const std::vector<Subscript>& subscripts);
/// The dimensions as `count` subscripts see them: the last one takes what is left.
Shape seen_by(const Shape& shape, std::size_t count);
std::size_t product(const Shape& shape);
/// Offsets of the places in an array of `shape`, the first dimension fastest.
std::vector<std::size_t> offsets_in(const Shape& shape, const std::vector<Names>& names);
/// How many places there are in each dimension.
Shape shape_of_places(const Shape& shape, const std::vector<Names>& names);

}  // namespace embedded::scripting_runtime
