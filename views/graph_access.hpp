// Small questions to a graph that several views ask.
#pragma once

#include "embedded/graph_core/connector_type.hpp"
#include "platform/graph_core/graph.hpp"

#include <string>

namespace kinemo::views {

using embedded::graph_core::connector_type;

/// The connections of one level.
const std::set<gl::core::Connection>& connections(const gl::core::Graph& graph);

/// The block path that an entry is tied to, UTF-8.
std::string object_text(const gl::core::GraphEntry& entry);

}  // namespace kinemo::views
