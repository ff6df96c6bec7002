// Which blocks of a diagram that was made of a netlist with mistakes the errors are about.
#pragma once

#include "formats/diagnostics.hpp"
#include "formats/spice/netlist.hpp"

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::spice {

/// Gives each error that stands in the card of an element, a call or a definition the block made from it as its object;
/// of many instances the first.
void point_at_blocks(const Netlist& netlist, const embedded::block_diagram::Diagram& diagram,
                     DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
