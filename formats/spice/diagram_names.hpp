// The names that a diagram of the embedded host holds for the writer of netlists.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "formats/spice/source_names.hpp"

class GTBlock;
class gtPort;

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::spice {

/// Refers to the diagram, which must outlive it and stay as it is.
class DiagramNames : public SourceNames {
 public:
  /// `file` names the diagram's file where a block tells no place.
  DiagramNames(const embedded::block_diagram::Diagram& diagram, std::string file);

  SourceNet net(const gl::core::Component& component, const kmf::VnId& connector) const override;
  /// The names of the net's lines, then those of the I/O ports at it.
  SourceNetNames names(SourceNet net) const override;
  std::vector<SourcePort> ports(const gl::core::Component& subgraph) const override;
  /// The type of the block's mask.
  std::string definition_name(const gl::core::Component& subgraph) const override;
  SourcePlace place(const gl::core::Component& component) const override;

 private:
  using PortsByName = std::unordered_map<std::string, const gtPort*>;

  const GTBlock* block_of(const gl::core::Component& component) const;
  const PortsByName& ports_by_name(const GTBlock& block) const;

  const embedded::block_diagram::Diagram& m_diagram;
  std::string m_file;
  mutable std::unordered_map<const gl::core::Component*, const GTBlock*> m_blocks;  ///< those that were asked for
  mutable const GTBlock* m_last_block = nullptr;  ///< whose ports are held by name: connectors are asked in a row
  mutable PortsByName m_ports;
};

}  // namespace kinemo::formats::spice
