#pragma once

// Which variables the expressions of a diagram need besides its run-time parameters. An expression that is kept alive
// names all that it is made of: `x*c` follows the run-time parameter x, and the constant c has to come along with it.

#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/diagram.hpp"

#include <set>
#include <string>

namespace embedded::block_diagram {

struct CompanionNames {
  /// Variables that a text names together with a run-time parameter or with a parameter of a mask.
  std::set<std::string> variables;
  /// Parameters of masks that have no real numbers and that such a text names.
  std::set<std::string> withoutNumbers;
};

/// One pass over the texts of all masks, each text once. `marked` are the run-time parameters.
CompanionNames companionNames(const Diagram& diagram, const VariableScope& variables,
                              const std::set<std::string>& marked);

}  // namespace embedded::block_diagram
