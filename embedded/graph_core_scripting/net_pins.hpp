#pragma once

#include "embedded/graph_core_scripting/component_paths.hpp"

#include <string>
#include <vector>

namespace embedded::graph_core_scripting {

/// A connector of a leaf component.
struct Pin {
  std::string component;  ///< identifiers joined by "/"
  std::string connector;
  std::string block;  ///< the path of the block, with the model's name; empty where there is none

  friend bool operator<(const Pin& a, const Pin& b) {
    return a.component != b.component ? a.component < b.component : a.connector < b.connector;
  }
};

/// All pins that share a node with a connector, through all levels; sorted. Its own pin is one of them. Linear in the
/// net's pins and in the nodes of the subgraphs on the way; any depth.
/// @throws "kinemo:graph:scripting" "NoSuchPort" (port, component), with the nearest name as its cause
std::vector<Pin> net_pins(const FoundComponent& component, const std::string& port);

}  // namespace embedded::graph_core_scripting
