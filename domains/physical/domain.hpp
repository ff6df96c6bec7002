#pragma once

#include "domains/physical/block_kind.hpp"

#include <vector>

class GtBlockContext;

namespace kinemo::physical {

/// Registers the domain with its manager, prototypes of the kinds, and the scripting function that generates their
/// masks.
/// @throws what the translation service and the host raise for a name that is taken; nothing is registered then
void load_domain(std::vector<BlockKind> kinds, GtBlockContext* context);

/// Takes back what `load_domain` registered. Diagrams with blocks of the domain must be closed before.
void unload_domain();

}  // namespace kinemo::physical
