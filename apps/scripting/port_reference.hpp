// Ports as users name them: 'Block.port', the name alone of a block with one port, or {'Block 1.5', 'port'} for any
// names; all relative to a system.
#pragma once

#include "apps/scripting/diagram_inputs.hpp"

#include <string>
#include <vector>

namespace kinemo::scripting {

/// The ports that the inputs name, from `first` on and in front of `end`.
/// @throws "BadPort" (text), "UnknownBlock" (text, system, name, nearest or ""), "UnknownPort" (block path, what is
/// wrong, port names), "WhichPort" (block path, port names), "LineAcrossSystems" (text, system)
std::vector<gtPort*> ports_from(const Call& call, std::size_t first, std::size_t end, const host::System& system);
/// One of them. @throws as above, "NotAText", "NotTexts"
gtPort* port_of(const cvArray_tag* reference, const InputPlace& place, const host::System& system);

}  // namespace kinemo::scripting
