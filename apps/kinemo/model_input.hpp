// The reading of the model that the command line names.
#pragma once

#include "apps/kinemo/options.hpp"
#include "formats/diagnostics.hpp"
#include "formats/on_errors.hpp"

#include <string>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::app {

class Console;

/// Reads the model that the options name; `shown` names it in messages. Where it has errors, which are in the list
/// then, the result is null unless they are kept. @throws UsageError where the file can't be read
embedded::block_diagram::Diagram* read_model(const Options& options, const std::string& shown, Console& console,
                                             formats::DiagnosticList& list, formats::OnErrors on_errors);

}  // namespace kinemo::app
