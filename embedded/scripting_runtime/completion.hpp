#pragma once

// What a prompt offers behind what is typed.

#include "embedded/scripting_runtime/workspace.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

struct Completion {
  std::size_t begin = 0;                ///< place in the line from which on the candidates stand
  std::vector<std::string> candidates;  ///< sorted; each begins with what is typed
};

/// Names of variables, functions and parts of package paths; behind a dot the fields of a structure, the properties
/// and methods of an object, also of an element as in a(2).b{1}.; in quotes what completion_texts.hpp gives; behind
/// `help` all topics. `line` ends at the cursor. Nothing is called or evaluated.
Completion complete(std::string_view line, const Workspace& workspace);

/// What all of them begin with.
std::string common_beginning(const std::vector<std::string>& texts);

}  // namespace embedded::scripting_runtime
