// The reader of diagram files: YAML, which JSON is part of. See docs/formats.md.
#pragma once

#include "formats/diagnostics.hpp"

#include <string>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::diagram {

/// Reads a file into a new diagram of the host, which owns it. Everything that is wrong with the file, and with those
/// that it links to, goes to `problems` in one run; then there is no diagram and the result is null.
embedded::block_diagram::Diagram* read_diagram(const std::string& path, DiagnosticList& problems);

/// The same for a text that was read already. `name` stands for the file in messages; links are relative to its folder.
embedded::block_diagram::Diagram* read_diagram_text(const std::string& text, const std::string& name,
                                                    DiagnosticList& problems);

}  // namespace kinemo::formats::diagram
