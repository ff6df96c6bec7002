// Names of flattened nets, taken from the lines that the user named.
#pragma once

#include "views/flat_network.hpp"

#include <string>
#include <vector>

class gtPort;

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::views {

/// The diagram's ports behind a network: by component, then by connector; null where the diagram has none.
using HostPorts = std::vector<std::vector<gtPort*>>;

/// The network was compiled from the diagram. Blocks are found by their paths, which takes time where they are long.
HostPorts host_ports(const FlatNetwork& network, const embedded::block_diagram::Diagram& diagram);

/// The name by which lines refer to the port of a pin; where the diagram doesn't have it, the connector's identifier.
std::string pin_name(const FlatNetwork& network, const HostPorts& ports, const FlatPin& pin);

/// One name for each net of the network, no two alike: that of the named line in the topmost system which the net
/// reaches, with the system's path in front of it; a net without one is named by its first pin, as "path.port".
std::vector<std::string> name_nets(const FlatNetwork& network, const HostPorts& ports);

}  // namespace kinemo::views
