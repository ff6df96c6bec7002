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

/// Refers to the diagram, which must outlive it and stay as it is. Each net of the diagram is looked at once.
class DiagramNames : public SourceNames {
 public:
  /// `file` names the diagram's file where a block tells no place.
  DiagramNames(const embedded::block_diagram::Diagram& diagram, std::string file);

  /// The names of the lines behind a node: those of the topmost system first, then in the order of texts.
  std::vector<std::string> node_names(const gl::core::Graph& level, const kmf::VnId& node) const override;
  /// The type of the block's mask.
  std::string definition_name(const std::string& object) const override;
  SourcePlace place(const std::string& object) const override;

 private:
  using PortsByName = std::unordered_map<std::string, const gtPort*>;

  const gtPort* port_of(const gl::core::Component& component, const kmf::VnId& connector) const;
  const PortsByName& ports_of(const GTBlock& block) const;
  const std::vector<std::string>& line_names(const gtPort& port) const;

  const embedded::block_diagram::Diagram& m_diagram;
  std::string m_file;
  mutable std::unordered_map<const void*, std::vector<std::string>> m_line_names;  ///< by the host's net
  mutable std::unordered_map<const GTBlock*, PortsByName> m_ports;                 ///< of blocks that have many
};

}  // namespace kinemo::formats::spice
