// Which port of the diagram each connector of a subgraph stands for. Names don't tell: identifiers of connectors change
// where they collide with others. What they join inside does.
#pragma once

#include <unordered_map>
#include <vector>

#include "formats/spice/source_names.hpp"

namespace kinemo::formats::spice {

struct SubgraphPort {
  SourcePort source;
  kmf::VnId connector;  ///< empty for a port that joins nothing, or the same as another port
};

/// Refers to the model and the names, which must outlive it. Linear in the size of the model.
class SubgraphPorts {
 public:
  SubgraphPorts(const gl::core::Graph& top, const SourceNames& source);

  /// In the order of the subsystem's ports; empty where nothing is known.
  const std::vector<SubgraphPort>& of(const gl::core::Component& subgraph) const;
  /// The net at a connector of any component; null where it isn't known.
  SourceNet net(const gl::core::Component& component, const kmf::VnId& connector) const;

 private:
  struct Ports {
    std::vector<SubgraphPort> all;
    std::unordered_map<kmf::VnId, std::size_t> by_connector;
  };

  Ports ports_of(const gl::core::Component& subgraph, const gl::core::Graph& inside) const;

  const SourceNames& m_source;
  std::unordered_map<const gl::core::Component*, Ports> m_ports;
};

}  // namespace kinemo::formats::spice
