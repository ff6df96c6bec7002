// Turns a netlist into blocks and lines: a call becomes a masked subsystem, an element a block of the
// physical domain, a node one line on each level that it reaches.
#pragma once

#include "formats/diagnostics.hpp"
#include "formats/spice/netlist.hpp"

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::spice {

/// Fills an empty diagram. Values that can't be computed are reported; then the diagram isn't complete. Of a netlist
/// that `has_mistakes`, faulty elements get no values, and boxes stand for those that aren't supported and for calls of
/// what can't be called.
/// @throws what the host raises for blocks and variables
void build_diagram(Netlist& netlist, embedded::block_diagram::Diagram& diagram, DiagnosticList& diagnostics,
                   bool has_mistakes = false);

}  // namespace kinemo::formats::spice
