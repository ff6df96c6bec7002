#include "formats/spice/diagram_names.hpp"

#include <algorithm>
#include <set>

#include "embedded/block_diagram/diagram.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/error_diagnostics.hpp"
#include "views/graph_access.hpp"

namespace kinemo::formats::spice {

namespace host = embedded::block_diagram;

namespace {

/// Blocks with more ports than that keep them by name.
constexpr std::size_t few_ports = 16;

bool is_named(const gtPort& port, const kmf::VnId& connector) {
  const std::string name = views::port_name(port);
  return connector.view() == name || connector == kmf::VnId::make(name);
}

std::size_t depth_of(const gtPort& port) {
  std::size_t depth = 0;
  for (const GTBlock* owner = host::parentSystem(*port.getGrOwnerBlock()).owner(); owner != nullptr;
       owner = host::parentSystem(*owner).owner()) {
    ++depth;
  }
  return depth;
}

}  // namespace

DiagramNames::DiagramNames(const host::Diagram& diagram, std::string file)
    : m_diagram(diagram), m_file(std::move(file)) {}

const gtPort* DiagramNames::port_of(const gl::core::Component& component, const kmf::VnId& connector) const {
  const GTBlock* block = m_diagram.findBlock(
      kmf::utf8_string_to_ustring(views::relative_path(gl::core::object(gl::core::GraphEntry(component)))));
  if (block == nullptr) {
    return nullptr;
  }
  const std::vector<gtPort*> ports = host::ports(*block);
  if (ports.size() > few_ports) {
    const PortsByName& by_name = ports_of(*block);
    const auto found = by_name.find(std::string(connector));
    return found != by_name.end() ? found->second : nullptr;
  }
  const auto found =
      std::find_if(ports.begin(), ports.end(), [&](const gtPort* port) { return is_named(*port, connector); });
  return found != ports.end() ? *found : nullptr;
}

const DiagramNames::PortsByName& DiagramNames::ports_of(const GTBlock& block) const {
  const auto [entry, is_new] = m_ports.try_emplace(&block);
  if (is_new) {
    for (const gtPort* port : host::ports(block)) {
      const std::string name = views::port_name(*port);
      entry->second.emplace(name, port);
      entry->second.emplace(kmf::VnId::make(name), port);
    }
  }
  return entry->second;
}

const std::vector<std::string>& DiagramNames::line_names(const gtPort& port) const {
  const std::vector<gtPort*>& net = host::netOf(port);
  const auto [entry, is_new] = m_line_names.try_emplace(&net);
  if (is_new) {
    std::set<std::string> names;
    for (const gtPort* member : net) {
      for (const host::Line* line : host::linesAt(*member)) {
        names.insert(kmf::ustring_to_utf8_string(line->name));
      }
    }
    names.erase(std::string());
    entry->second.assign(names.begin(), names.end());
  }
  return entry->second;
}

std::vector<std::string> DiagramNames::node_names(const gl::core::Graph& level, const kmf::VnId& node) const {
  std::set<std::pair<std::size_t, std::string>> ranked;
  std::set<const void*> seen;
  for (const gl::core::Connection& connection : level.connections(node)) {
    const gl::core::ConnectorSpec& connector = connection.connectorSpec();
    const gtPort* port = port_of(level.components().at(connector.componentId()), connector.connectorId());
    if (port == nullptr || !seen.insert(&host::netOf(*port)).second) {
      continue;
    }
    for (const std::string& name : line_names(*port)) {
      ranked.emplace(depth_of(*port), name);
    }
  }
  std::vector<std::string> names;
  for (const auto& [depth, name] : ranked) {
    names.push_back(name);
  }
  return names;
}

std::string DiagramNames::definition_name(const std::string& object) const {
  const ustring path = kmf::utf8_string_to_ustring(object);
  const GTBlock* block = m_diagram.findBlock(kmf::utf8_string_to_ustring(views::relative_path(path)));
  const auto mask = block != nullptr ? MaskInterface::mask(block) : nullptr;
  return mask != nullptr ? std::string(mask->type) : std::string();
}

SourcePlace DiagramNames::place(const std::string& object) const {
  return views::place_of(object, &m_diagram, m_file);
}

}  // namespace kinemo::formats::spice
