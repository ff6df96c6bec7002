// Places one block with the contents of a part's file in a diagram that is open.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "formats/diagnostics.hpp"

#include <string>

namespace kinemo::formats::diagram {

/// The subsystem, as a diagram's file that links to the part would have it; `path` is told from the current folder.
/// Null where the file, or a part that it links to, has errors: these are added to `problems`, and the system is as it
/// was. The same holds when an operation of the host throws.
GTBlock* read_part(embedded::block_diagram::System& system, const ustring& name, const std::string& path,
                   DiagnosticList& problems);

}  // namespace kinemo::formats::diagram
