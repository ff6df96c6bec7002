#pragma once

// The records behind the opaque types of the data access. Chains of all blocks stand in one vector, one behind the
// other; the head of a chain has a block at its near end, and a record without a near end closes the vector.

#include "platform/block_diagram/block.hpp"
#include "platform/network_data/network_data.hpp"

#include <string>
#include <vector>

struct Connection_tag {
  const GantrelObject* near;  ///< a block: a head; a port: an element
  const gtPort* far;          ///< null for a port without a connection
};

struct ListItem_tag {
  const Connection_tag* head;  ///< null closes the list
};

struct KMMachineData_tag {
  std::string model;
  std::string domain;
  std::vector<Connection_tag> chain;
  std::vector<ListItem_tag> items;
};
