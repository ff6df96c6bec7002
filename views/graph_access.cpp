#include "views/graph_access.hpp"

#include "platform/foundation/strings.hpp"

namespace kinemo::views {

std::string connector_type(const gl::core::Component& component, const kmf::VnId& connector) {
  const gl::core::detail::GraphIdTypePredicate<gl::core::Connector> predicate;
  const auto found = component.findEntry(connector, predicate);
  const auto* entry = boost::get<gl::core::GraphEntryRef>(&found);
  const auto* typed = entry != nullptr ? boost::get<const gl::core::Connector*>(entry) : nullptr;
  return typed != nullptr ? std::string((*typed)->type()) : std::string();
}

const std::set<gl::core::Connection>& connections(const gl::core::Graph& graph) {
  return graph.connections(kmf::VnIdPathIterator());
}

std::string object_text(const gl::core::GraphEntry& entry) {
  return kmf::ustring_to_utf8_string(gl::core::object(entry));
}

}  // namespace kinemo::views
