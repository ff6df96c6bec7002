#pragma once

// The script classes of the graph core.

#include "embedded/class_system/classes.hpp"
#include "platform/foundation/exception.hpp"

#include <string>
#include <vector>

namespace embedded::graph_core_scripting {

constexpr char graph_class_name[] = "kinemo.gl.Graph";  // around a gl::core::Graph
constexpr char parameter_info_class_name[] =
    "kinemo.gl.RuntimeParameterInfo";  // around a gl::core::RuntimeParameterInfo

class_system::ClassDefinition graph_class();
class_system::ClassDefinition parameter_info_class();

// Methods of Graph, by area.
std::vector<class_system::MethodDefinition> graph_listing_methods();    // components nodes connections count
std::vector<class_system::MethodDefinition> graph_component_methods();  // component parameters tags
std::vector<class_system::MethodDefinition> graph_structure_methods();  // subgraph connectedComponents net

/// Raises `error` with the nearest of the known names as its cause, where one is near.
[[noreturn]] void throw_with_nearest(kmf::MessageException error, const std::string& name,
                                     const std::vector<std::string>& known);

}  // namespace embedded::graph_core_scripting
