#pragma once

// The errors of arrays and the checks that raise them. Positions count from 1 in messages, as the language does.

#include "platform/foundation/exception.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <string>
#include <utility>
#include <vector>

namespace kmf::embedded {

template <class... Arguments>
[[noreturn]] void throw_array_error(const char* id, Arguments&&... arguments) {
  throw_message("kinemo:scripting:array", id, std::forward<Arguments>(arguments)...);
}

/// "2x3x4"
std::string dimensions_text(const std::vector<std::size_t>& dimensions);

[[noreturn]] void throw_index_out_of_range(std::size_t index, std::size_t count);

inline void check_index(std::size_t index, std::size_t count) {
  if (index >= count) throw_index_out_of_range(index, count);
}

}  // namespace kmf::embedded
