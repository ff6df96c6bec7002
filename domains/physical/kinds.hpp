#pragma once

#include "domains/physical/block_kind.hpp"

#include <vector>

namespace kinemo::physical {

// The tables of the domain's library, one for each physical area.
std::vector<BlockKind> electrical_kinds();
std::vector<BlockKind> electrical_source_kinds();
std::vector<BlockKind> rotational_kinds();
std::vector<BlockKind> translational_kinds();
std::vector<BlockKind> thermal_kinds();
std::vector<BlockKind> converter_kinds();
/// The elements of netlists, below `physical/spice/`.
std::vector<BlockKind> spice_kinds();

/// All of them.
std::vector<BlockKind> all_kinds();

}  // namespace kinemo::physical
