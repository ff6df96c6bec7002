// The systems of a diagram that take part in a compile. Nothing is owned here.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "formats/diagnostics.hpp"

#include <functional>
#include <string>

namespace kinemo::checks {

namespace host = embedded::block_diagram;

/// Visits the top system and those of all subsystems below it, from the top down: of variants the active choice alone,
/// and nothing inside of opaque subsystems.
void for_each_system(host::Diagram& diagram, const std::function<void(host::System&)>& visit);

/// The place in a file where a block was written, or `file` where it tells none.
formats::SourcePlace block_place(const GTBlock& block, const std::string& file);

/// "port 'p' of 'Filter/R1'", with the block's path below the model.
std::string describe(const gtPort& port);

}  // namespace kinemo::checks
