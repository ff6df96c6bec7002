#include "embedded/graph_core/connector_type.hpp"

namespace embedded::graph_core {

std::string connector_type(const gl::core::Component& component, const kmf::VnId& connector) {
  const gl::core::detail::GraphIdTypePredicate<gl::core::Connector> predicate;
  const auto found = component.findEntry(connector, predicate);
  const auto* entry = boost::get<gl::core::GraphEntryRef>(&found);
  const auto* typed = entry != nullptr ? boost::get<const gl::core::Connector*>(entry) : nullptr;
  return typed != nullptr ? std::string((*typed)->type()) : std::string();
}

}  // namespace embedded::graph_core
