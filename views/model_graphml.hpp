// The compiled model as GraphML, for programs that draw and analyse graphs. docs/formats.md tells its keys.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <iosfwd>
#include <string>

namespace kinemo::views {

void write_model_graphml(std::ostream& out, const std::string& name, const std::string& domain,
                         const gl::core::Model& model);

}  // namespace kinemo::views
