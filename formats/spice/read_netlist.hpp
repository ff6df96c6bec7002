// The way in for SPICE netlists: a file becomes a diagram of the embedded host. See docs/netlists.md.
#pragma once

#include <string>

#include "formats/diagnostics.hpp"
#include "formats/on_errors.hpp"

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::formats::spice {

struct Options {
  std::string model_name;  ///< empty: the file's stem, made an identifier
  OnErrors on_errors = OnErrors::close;
};

/// Reads a netlist with all that it includes into a new diagram, which the host owns until it is closed. When
/// errors were added to the list the result is null, and there is no diagram, unless the caller keeps what could be
/// read; then the errors name the blocks that they are about.
embedded::block_diagram::Diagram* read_netlist(const std::string& path, const Options& options,
                                               DiagnosticList& diagnostics);

/// The same for a text that was read already. `name` stands for the file in messages; includes are relative to its
/// folder.
embedded::block_diagram::Diagram* read_netlist_text(const std::string& text, const std::string& name,
                                                    const Options& options, DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
