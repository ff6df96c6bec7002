#pragma once

// A compile of a diagram: parameters are evaluated and checked, then each domain makes its model of the network.

#include "platform/compile_layer/domain_manager.hpp"

#include <cstddef>
#include <functional>
#include <string>

namespace embedded::block_diagram {
class Diagram;
}

namespace embedded::compile_layer {

/// Told now and then how far the compile has come: the stage's name, what is done and how much there is (0: unknown).
using Progress = std::function<void(const char* stage, std::size_t done, std::size_t total)>;

/// Evaluates mask parameters top down, lets every block check its parameters, then hands the machine data to each
/// domain that has blocks in the diagram. What the domains make is in the result.
/// @throws "kinemo:host:compile" "ParameterErrors" (model) with one cause for each block whose parameters fail, and
/// whatever a domain raises; "Interrupted" (model), or what an expression raises, where the user ends it: the diagram
/// is then as after any other error
DACompileResult compile(block_diagram::Diagram& diagram, const Progress& progress = {});

/// The first stage alone: afterwards every mask workspace holds values. @throws as `compile`
void evaluateParameters(block_diagram::Diagram& diagram, const Progress& progress = {});

}  // namespace embedded::compile_layer
