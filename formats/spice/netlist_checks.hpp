// What can only be checked, and told, when the whole netlist is known: calls against definitions, duplicate names,
// recursion, the size of the expanded circuit, and which global nodes each definition reaches.
#pragma once

#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

/// Elements and calls of an expanded netlist beyond which it is refused.
inline constexpr double largest_circuit = 50'000'000;

/// Reports mistakes, and fills in `Definition::reached_globals` where definitions don't call themselves.
void check_netlist(Netlist& netlist, Reporter& reporter);

}  // namespace kinemo::formats::spice
