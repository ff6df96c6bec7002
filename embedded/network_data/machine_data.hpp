#pragma once

// The physical network of one diagram as the host tells it: the records behind the data access of
// `platform/network_data`. A `MachineData` owns its records, holds no texts, and is good until the diagram is edited.

#include "platform/block_diagram/block.hpp"
#include "platform/network_data/network_data.hpp"

#include <memory>
#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace embedded::network_data {

/// How the members of a net are told of each other.
enum class Listing {
  Spanning,  ///< of n ports n-1 pairs, each from both ends
  AllPairs   ///< every ordered pair: quadratic, to be compared with
};

class MachineData {
 public:
  /// Opaque subsystems in a diagram without any block of a domain go to `fallbackDomains`.
  explicit MachineData(const block_diagram::Diagram& diagram, Listing listing = Listing::Spanning,
                       const std::vector<std::string>& fallbackDomains = {});
  ~MachineData();
  MachineData(const MachineData&) = delete;
  MachineData& operator=(const MachineData&) = delete;

  /// Domains that have blocks in the diagram, ascending.
  std::vector<std::string> domains() const;
  /// Null where the domain has no block in the diagram.
  const KMMachineData_tag* machine(const std::string& domain) const;

 private:
  std::vector<std::unique_ptr<KMMachineData_tag>> machines_;
};

/// The network by its ports: all members of each net of the flattened diagram, those of one port included, and all
/// blocks of the network. Both in the order of the drawing, from the top down.
struct PortNets {
  std::vector<std::vector<gtPort*>> nets;
  std::vector<GTBlock*> blocks;
};
PortNets netsAsPorts(const block_diagram::Diagram& diagram);

/// Domains of the blocks of a diagram that are part of its network, ascending; as for `MachineData`.
std::vector<std::string> domainsOf(const block_diagram::Diagram& diagram,
                                   const std::vector<std::string>& fallbackDomains = {});

}  // namespace embedded::network_data
