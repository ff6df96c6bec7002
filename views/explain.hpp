// "Where does this value come from, and does it stay tunable?": one parameter of one block, told for people and
// programs.
#pragma once

#include "formats/diagnostics.hpp"
#include "views/tunability.hpp"

#include <iosfwd>
#include <string>

namespace kinemo::views {

struct Explanation {
  std::string block;  ///< path without the model's name
  std::string parameter;
  ParameterTrace trace;
  CompiledParameter compiled;
  Tunability tunability;
};

/// Explains a parameter of the mask of a block. `model` was compiled from the diagram with run-time parameters
/// propagated. An unknown block or parameter is an error in the list (rules "explain:unknown-block" and
/// "explain:unknown-parameter"), and then the result is none. A block's path may begin with the model's name.
boost::optional<Explanation> explain(const gl::core::Model& model, embedded::block_diagram::Diagram& diagram,
                                     const std::string& block, const std::string& parameter, const std::string& file,
                                     formats::DiagnosticList& list);

void write_explanation_text(std::ostream& out, const Explanation& explanation);
/// {"schema": 1, "model", "block", "parameter", "origins": [{"kind", "block", "name", "text", "value", "runtime",
/// "names": [places in this list]}, ...], "compiled": {...}, "tunable", "through": [...], "reason"}
void write_explanation_json(std::ostream& out, const std::string& model, const Explanation& explanation);

}  // namespace kinemo::views
