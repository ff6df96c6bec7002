#pragma once

// Scopes nest: the one opened last is the open one. Each keeps a list of its arrays, linked through the arrays.

#include "embedded/scripting_array/array.hpp"

namespace kmf::embedded {

/// Puts a new array into the open scope; into none when no scope is open.
void enter_open_scope(cvArray_tag* array) noexcept;

}  // namespace kmf::embedded
