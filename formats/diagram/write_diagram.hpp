// The writer of diagram files. What it writes reads back as an equal diagram; what a file can't hold is refused, and
// nothing is left out in silence but what docs/formats.md names: comments, aliases, and texts of variables, whose
// values are written. See docs/formats.md.
#pragma once

#include "formats/diagnostics.hpp"

#include <optional>
#include <string>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::diagram {

/// The text of a file that holds the diagram: YAML, or JSON where the file's name ends in .json. `file` is the path
/// that the text is meant for: paths of dictionaries and of linked parts are told from its folder; empty for the
/// current folder. Nothing when something can't be written: then errors ("diagram:unwritable", "diagram:too-deep",
/// "diagram:too-big") were added to `problems`.
std::optional<std::string> diagram_text(embedded::block_diagram::Diagram& diagram, const std::string& file,
                                        DiagnosticList& problems);

/// Writes the file, which is replaced at once and only by the whole text. False when something can't be written, with
/// errors as above, or "diagram:unwritable-file".
bool write_diagram(embedded::block_diagram::Diagram& diagram, const std::string& file, DiagnosticList& problems);

}  // namespace kinemo::formats::diagram
