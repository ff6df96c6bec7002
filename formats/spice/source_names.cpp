#include "formats/spice/source_names.hpp"

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

std::string SourceNames::definition_name(const std::string&) const {
  return {};
}

/// Slashes that belong to names are doubled in paths, and paired from the end.
std::string SourceNames::block_name(const std::string& object) const {
  std::string reversed;
  for (std::size_t at = object.size(); at > 0; --at) {
    const char c = object[at - 1];
    if (c == '/' && (at < 2 || object[at - 2] != '/')) {
      break;
    }
    at -= c == '/' ? 1 : 0;
    reversed += c;
  }
  return {reversed.rbegin(), reversed.rend()};
}

SourcePlace SourceNames::place(const std::string&) const {
  return {};
}

}  // namespace kinemo::formats::spice
