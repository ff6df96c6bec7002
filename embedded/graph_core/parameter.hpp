#pragma once

// Rules of parameter values that the interface doesn't name.

#include "platform/graph_core/graph.hpp"

namespace gl::core::detail {

/// Whether a parameter of the type may hold the value. Numbers without a unit fit any dimension, and so does an
/// expression to which no unit is bound.
bool takes(const ParameterType& type, const ParameterVariant& value);

/// A reference to the value as what it is.
GraphEntryRef value_entry(const ParameterVariant& value);

}  // namespace gl::core::detail
