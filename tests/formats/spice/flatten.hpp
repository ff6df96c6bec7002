// The expanded circuit as a plain table, made from names alone as the dialect tells it: the yardstick for what diagrams
// of netlists connect.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

struct FlatElement {
  std::vector<std::string> nodes;
  std::string value;  ///< empty where the card has none
  std::string text;
};

/// Elements by path ("x1.x2.r3"); nodes have the names that the simulator gives them.
std::map<std::string, FlatElement> flatten(const Netlist& netlist, DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
