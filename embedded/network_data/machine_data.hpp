#pragma once

// The machine data of a diagram's network, made for one compile. It holds pointers into the diagram and no text.

#include "embedded/block_diagram/diagram.hpp"
#include "platform/network_data/network_data.hpp"

#include <memory>
#include <string>
#include <vector>

namespace embedded::network_data {

/// How a net of n ports is told: by n - 1 pairs that span it, or by all pairs. Both compile to equal graphs.
enum class Listing { Spanning, AllPairs };

class MachineData {
 public:
  /// The network of one domain in the diagram, which must outlive the data.
  MachineData(const block_diagram::Diagram& diagram, const std::string& domain, Listing listing = Listing::Spanning);
  ~MachineData();
  MachineData(MachineData&&) noexcept;
  MachineData& operator=(MachineData&&) noexcept;

  const KMMachineData_tag* get() const { return data_.get(); }

 private:
  std::unique_ptr<KMMachineData_tag> data_;
};

/// The same network as lists of ports: groups of nets of ports, and all blocks of the network.
struct PortLists {
  std::vector<std::vector<std::vector<gtPort*>>> nets;
  std::vector<GTBlock*> blocks;
};
PortLists portLists(const block_diagram::Diagram& diagram, const std::string& domain);

}  // namespace embedded::network_data
