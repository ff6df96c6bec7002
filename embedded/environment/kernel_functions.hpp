#pragma once

#include "platform/scripting_runtime/function_table.hpp"

namespace embedded {

/// Makes the functions of the kernel's table known to the runtime, with their help: gl.gti.iconStyling,
/// gl.gti.loggingSupported and gl.gti.portName. Does nothing where the program is linked without the kernel.
/// @throws as below
void registerKernelFunctions();
/// The same for a given table.
/// @throws "kinemo:host:modules" "FunctionTableDoesNotFit" (what differs) for marks, a version or a count of functions
/// that aren't the expected ones, and then nothing is made known
void registerKernelFunctions(const cvFunctionTable& table);
void unregisterKernelFunctions();

}  // namespace embedded
