// The way out to SPICE netlists: a compiled model of electrical parts becomes a hierarchical netlist. See
// docs/netlists.md.
#pragma once

#include <iosfwd>
#include <string>

#include "formats/diagnostics.hpp"
#include "formats/spice/source_names.hpp"
#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

/// Writes the model: its run-time parameters as `.param`, one `.subckt` for all subgraphs of one content, their
/// parameters as parameters of calls. The model should be one that kept its run-time parameters as expressions; others
/// are written with numbers. Linear in the size of the model, at any depth.
///
/// False, and nothing written, where parts or expressions have no counterpart; each is an error in the list then.
bool write_netlist(std::ostream& out, const gl::core::Model& model, const std::string& title, const SourceNames& source,
                   DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
