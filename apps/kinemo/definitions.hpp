// Variables that the command line gives, as `-D NAME=VALUE`.
#pragma once

#include "formats/diagnostics.hpp"

#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::app {

/// What is wrong with the form of a definition; empty when nothing is.
std::string definition_fault(const std::string& definition);

/// Sets variables of the model workspace, in order. The value is an expression over the model's variables; a variable
/// that exists keeps its unit and its mark as run-time parameter. What can't be evaluated goes to the list as an error,
/// a new variable whose name is nearly a known one as a warning.
void define_variables(const std::vector<std::string>& definitions, embedded::block_diagram::Diagram& diagram,
                      formats::DiagnosticList& list);

}  // namespace kinemo::app
