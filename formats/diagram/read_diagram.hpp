// The reader of diagram files: YAML, which JSON is part of. See docs/formats.md.
#pragma once

#include "formats/diagnostics.hpp"
#include "formats/on_errors.hpp"

#include <string>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::diagram {

/// Reads a file into a new diagram of the host, which owns it. Everything that is wrong with the file, and with those
/// that it links to, goes to `problems` in one run, and names the block or net that it is about. Then there is no
/// diagram and the result is null, unless the caller keeps what could be read.
embedded::block_diagram::Diagram* read_diagram(const std::string& path, DiagnosticList& problems,
                                               OnErrors on_errors = OnErrors::close);

/// The same for a text that was read already. `name` stands for the file in messages; links are relative to its folder.
embedded::block_diagram::Diagram* read_diagram_text(const std::string& text, const std::string& name,
                                                    DiagnosticList& problems, OnErrors on_errors = OnErrors::close);

}  // namespace kinemo::formats::diagram
