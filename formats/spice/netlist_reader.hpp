// From cards to a netlist: both looks at the cards, then the checks that need the whole netlist.
#pragma once

#include <memory>

#include "formats/diagnostics.hpp"
#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

struct TextFile;

/// Reads the netlist that begins with the file `top`. Of use as a circuit only if no errors were added, and else only to
/// show what could be read.
Netlist read_cards_and_resolve(const std::shared_ptr<const TextFile>& top, DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
