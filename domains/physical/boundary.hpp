#pragma once

#include "platform/graph_core/graph.hpp"

#include <vector>

namespace kinemo::physical {

/// Refuses networks that reach across an atomic subsystem; `components` are their parts inside such subsystems.
/// @throws "kinemo:physical:compile" "NetworkCrossesAtomicSubsystem" (names of the first blocks, number of all blocks),
/// with the paths of all blocks as objects
[[noreturn]] void refuse_crossing(const std::vector<gl::core::Component>& components);

}  // namespace kinemo::physical
