#pragma once

#include "platform/scripting_runtime/function_table.hpp"

namespace embedded {

/// The function by which the kernel tells its table.
constexpr char kernel_table_symbol[] = "QueryCVFcnTable_kinemo_common_gl_gti_kernel";
using QueryFunctionTable = const cvFunctionTable*();

/// The kernel's, where the program is linked with it; null otherwise.
QueryFunctionTable* linkedKernelTable() noexcept;
/// Makes the functions of the kernel's table known to the runtime, with their help: gl.gti.iconStyling,
/// gl.gti.loggingSupported and gl.gti.portName.
/// @throws "kinemo:host:modules" "FunctionTableDoesNotFit" (what differs) for a null table or list, and for marks, a
/// version or a count of functions that aren't the expected ones, and then nothing is made known
void registerKernelFunctions(const cvFunctionTable* table);
/// Takes back the functions and all help.
void unregisterKernelFunctions();

}  // namespace embedded
