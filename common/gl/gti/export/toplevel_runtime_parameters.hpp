#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/graph_core/graph.hpp"

namespace gl::gti {

/// The names at the top of a model that are run-time parameters: with their values, and those without a value that the
/// graph core can hold. Empty where no scripting runtime answers. Script errors pass through.
KINEMO_GTI_API gl::core::RuntimeParameterInfo toplevel_runtime_parameters(const ustring& modelName);

}  // namespace gl::gti
