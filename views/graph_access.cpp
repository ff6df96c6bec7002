#include "views/graph_access.hpp"

#include "platform/foundation/strings.hpp"

namespace kinemo::views {

const std::set<gl::core::Connection>& connections(const gl::core::Graph& graph) {
  return graph.connections(kmf::VnIdPathIterator());
}

std::string object_text(const gl::core::GraphEntry& entry) {
  return kmf::ustring_to_utf8_string(gl::core::object(entry));
}

}  // namespace kinemo::views
