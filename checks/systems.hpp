// What rules say about blocks and ports, and where. Nothing is owned here.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "formats/diagnostics.hpp"
#include "views/systems.hpp"

#include <string>

namespace kinemo::checks {

namespace host = embedded::block_diagram;

using views::for_each_system;

/// The place in a file where a block was written, or `file` where it tells none.
formats::SourcePlace block_place(const GTBlock& block, const std::string& file);

/// "port 'p' of 'Filter/R1'", with the block's path below the model.
std::string describe(const gtPort& port);

/// What a picture points at for a finding about a port, or about its net.
formats::DiagnosticObject object_of(const gtPort& port, bool net = false);

}  // namespace kinemo::checks
