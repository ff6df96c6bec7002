// Where new ports of a subsystem go.
#pragma once

#include "embedded/block_diagram/block_data.hpp"

#include <algorithm>

namespace kinemo::scripting {

/// Behind all other ports, on whichever side.
inline int next_port_order(const embedded::block_diagram::System& inside) {
  int order = 0;
  for (const GTBlock* port : inside.ioPorts()) order = std::max(order, port->host().ioPort()->order);
  return order + 1;
}

}  // namespace kinemo::scripting
