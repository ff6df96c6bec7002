// The compiled model as JSON: the view of `kinemo compile --format json`. docs/formats.md tells its shape.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <iosfwd>
#include <string>

namespace kinemo::views {

void write_model_json(std::ostream& out, const std::string& name, const std::string& domain,
                      const gl::core::Model& model);

}  // namespace kinemo::views
