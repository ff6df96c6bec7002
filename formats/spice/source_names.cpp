#include "formats/spice/source_names.hpp"

#include "views/graph_access.hpp"

namespace kinemo::formats::spice {

SourceNet SourceNames::net(const gl::core::Component&, const kmf::VnId&) const {
  return nullptr;
}

SourceNetNames SourceNames::names(SourceNet) const {
  return {};
}

std::vector<SourcePort> SourceNames::ports(const gl::core::Component&) const {
  return {};
}

std::string SourceNames::definition_name(const gl::core::Component&) const {
  return {};
}

SourcePlace SourceNames::place(const gl::core::Component&) const {
  return {};
}

std::string block_path(const gl::core::Component& component) {
  return views::object_text(gl::core::GraphEntry(component));
}

/// Slashes that belong to names are doubled in paths, and paired from the end.
std::string block_name(const gl::core::Component& component) {
  const std::string path = block_path(component);
  std::string reversed;
  for (std::size_t at = path.size(); at > 0; --at) {
    const char c = path[at - 1];
    if (c == '/' && (at < 2 || path[at - 2] != '/')) {
      break;
    }
    at -= c == '/' ? 1 : 0;
    reversed += c;
  }
  return {reversed.rbegin(), reversed.rend()};
}

}  // namespace kinemo::formats::spice
