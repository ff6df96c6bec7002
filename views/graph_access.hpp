// Small questions to a graph that several views ask.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <string>

namespace kinemo::views {

/// The type path of a connector of the component; empty where there is no such connector.
std::string connector_type(const gl::core::Component& component, const kmf::VnId& connector);

/// The connections of one level.
const std::set<gl::core::Connection>& connections(const gl::core::Graph& graph);

/// The block path that an entry is tied to, UTF-8.
std::string object_text(const gl::core::GraphEntry& entry);

}  // namespace kinemo::views
