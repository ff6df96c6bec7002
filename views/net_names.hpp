// Names of flattened nets, taken from the lines that the user named.
#pragma once

#include "views/flat_network.hpp"

#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::views {

/// The names by which lines refer to the ports of each component, by its position in the network; where a port isn't
/// found in the diagram, the connector's identifier.
std::vector<std::vector<std::string>> port_names(const FlatNetwork& network,
                                                 const embedded::block_diagram::Diagram& diagram);

/// One name for each net of the network, no two alike: that of the named line in the topmost system which the net
/// reaches, with the system's path in front of it; a net without one is named by its first pin, as "path.port".
std::vector<std::string> name_nets(const FlatNetwork& network, const embedded::block_diagram::Diagram& diagram);

}  // namespace kinemo::views
