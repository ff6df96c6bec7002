#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/scripting_runtime/function_table.hpp"

/// The library's plain scripting functions, which a loader knows by their order:
///   1  (), (logical)            whether vector icons go to the host's icon service; with an input, after setting it
///   2  (block handle)           whether the handle is that of a core block whose kind can log simulation data
///   3  (block handle, port handle)   the identifier of a core block's port as text; empty for any other block
extern "C" KINEMO_GTI_API const cvFunctionTable* QueryCVFcnTable_kinemo_common_gl_gti_kernel();
