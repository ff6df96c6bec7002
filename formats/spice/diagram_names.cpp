#include "formats/spice/diagram_names.hpp"

#include <set>

#include "embedded/block_diagram/diagram.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/error_diagnostics.hpp"

namespace kinemo::formats::spice {

namespace host = embedded::block_diagram;

namespace {

using HostNet = std::vector<gtPort*>;

SourceNet net_at(const gtPort* port) {
  return port != nullptr ? &host::netOf(*port) : nullptr;
}

std::size_t depth_of(const gtPort& port) {
  std::size_t depth = 0;
  for (const GTBlock* owner = host::parentSystem(*port.getGrOwnerBlock()).owner(); owner != nullptr;
       owner = host::parentSystem(*owner).owner()) {
    ++depth;
  }
  return depth;
}

const gtPort* inner_port(const gtPort& outer) {
  const GTBlock* io_port = host::ioPortOf(outer);
  return io_port != nullptr ? host::ports(*io_port).front() : nullptr;
}

}  // namespace

DiagramNames::DiagramNames(const host::Diagram& diagram, std::string file)
    : m_diagram(diagram), m_file(std::move(file)) {}

/// A path is as long as the model is deep, so it is looked up once.
const GTBlock* DiagramNames::block_of(const gl::core::Component& component) const {
  const auto [entry, is_new] = m_blocks.try_emplace(&component);
  if (is_new) {
    const ustring path = gl::core::object(gl::core::GraphEntry(component));
    entry->second = m_diagram.findBlock(kmf::utf8_string_to_ustring(views::relative_path(path)));
  }
  return entry->second;
}

const DiagramNames::PortsByName& DiagramNames::ports_by_name(const GTBlock& block) const {
  if (m_last_block != &block) {
    m_ports.clear();
    for (const gtPort* port : host::ports(block)) {
      const std::string name = views::port_name(*port);
      m_ports.emplace(name, port);
      m_ports.emplace(kmf::VnId::make(name), port);
    }
    m_last_block = &block;
  }
  return m_ports;
}

SourceNet DiagramNames::net(const gl::core::Component& component, const kmf::VnId& connector) const {
  const GTBlock* block = block_of(component);
  if (block == nullptr) {
    return nullptr;
  }
  const PortsByName& ports = ports_by_name(*block);
  const auto found = ports.find(std::string(connector));
  return found != ports.end() ? net_at(found->second) : nullptr;
}

SourceNetNames DiagramNames::names(SourceNet net) const {
  const auto* ports = static_cast<const HostNet*>(net);
  if (ports == nullptr || ports->empty()) {
    return {};
  }
  std::set<std::string> lines;
  std::set<std::string> io_ports;
  for (const gtPort* port : *ports) {
    for (const host::Line* line : host::linesAt(*port)) {
      lines.insert(kmf::ustring_to_utf8_string(line->name));
    }
    if (host::isIoPort(*port->getGrOwnerBlock())) {
      io_ports.insert(views::port_name(*port));
    }
  }
  lines.erase(std::string());
  SourceNetNames names{depth_of(*ports->front()), {lines.begin(), lines.end()}};
  names.names.insert(names.names.end(), io_ports.begin(), io_ports.end());
  return names;
}

std::vector<SourcePort> DiagramNames::ports(const gl::core::Component& subgraph) const {
  const GTBlock* block = block_of(subgraph);
  std::vector<SourcePort> result;
  for (const gtPort* port : block != nullptr ? views::ports_in_kind_order(*block) : std::vector<gtPort*>()) {
    result.push_back({views::port_name(*port), net_at(port), net_at(inner_port(*port))});
  }
  return result;
}

std::string DiagramNames::definition_name(const gl::core::Component& subgraph) const {
  const GTBlock* block = block_of(subgraph);
  const auto mask = block != nullptr ? MaskInterface::mask(block) : nullptr;
  return mask != nullptr ? mask->type : std::string();
}

SourcePlace DiagramNames::place(const gl::core::Component& component) const {
  const GTBlock* block = block_of(component);
  const host::SourcePlace place = block != nullptr ? host::sourcePlace(*block) : host::SourcePlace();
  if (place.line <= 0) {
    return views::place_of(block_path(component), &m_diagram, m_file);
  }
  return {place.file != nullptr ? *place.file : m_file, static_cast<std::size_t>(place.line),
          static_cast<std::size_t>(place.column)};
}

}  // namespace kinemo::formats::spice
