// The systems of a diagram that take part in a compile. Nothing is owned here.
#pragma once

#include "embedded/block_diagram/diagram.hpp"

#include <functional>

namespace kinemo::views {

namespace host = embedded::block_diagram;

/// Visits the top system and those of all subsystems below it, each followed by those inside of it: of variants the
/// active choice alone, and nothing inside of opaque subsystems.
void for_each_system(host::Diagram& diagram, const std::function<void(host::System&)>& visit);

}  // namespace kinemo::views
