// The compiled model as a picture description for Graphviz: components as boxes, nodes as points, subgraphs as
// clusters.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <iosfwd>
#include <string>

namespace kinemo::views {

void write_model_dot(std::ostream& out, const std::string& name, const gl::core::Model& model);

}  // namespace kinemo::views
