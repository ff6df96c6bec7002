#pragma once

namespace embedded::graph_core_scripting {

/// Makes the package "kinemo.gl", its classes Graph and RuntimeParameterInfo, and their help known. May be called
/// again. Without it each class becomes known when somebody asks for it.
void load();

}  // namespace embedded::graph_core_scripting
