#pragma once

#include "platform/graph_core/graph.hpp"

#include <string>

namespace embedded::graph_core {

/// The type path of a connector of the component; empty where there is no such connector.
std::string connector_type(const gl::core::Component& component, const kmf::VnId& connector);

}  // namespace embedded::graph_core
