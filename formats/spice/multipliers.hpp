// `m=` on the call of a definition that has no parameter `m`. The simulator then gives the definition such a parameter,
// 1 for calls without it, and hands it on to every element inside that can be multiplied and to every call. There it
// replaces an `m=` that they give themselves; the two are not multiplied.
#pragma once

#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

/// Each definition is changed once, so netlists with recursion end as well. Warns where something is replaced or can't
/// be multiplied.
void spread_multipliers(Netlist& netlist, Reporter& reporter);

}  // namespace kinemo::formats::spice
