// The order in which the parameters of a definition get their values: what a value needs comes before it.
#pragma once

#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

/// Orders the parameters and reports those that need themselves. Inside of a subcircuit, a parameter that names itself
/// means the one of that name outside; at the top level there is no outside.
void order_parameters(Definition& definition, bool is_top, Reporter& reporter);

}  // namespace kinemo::formats::spice
