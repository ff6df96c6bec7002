// Which reader a model needs, and its reading.
#pragma once

#include "apps/kinemo/options.hpp"
#include "formats/diagnostics.hpp"

#include <string>
#include <string_view>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::app {

class Console;

enum class ModelFormat { diagram, spice };

/// By the file's name, and where that doesn't tell by what stands in it.
ModelFormat detect_format(const std::string& file, std::string_view text);

/// Reads the model that the options name; `shown` names it in messages. Null where it has errors, which are in the list
/// then. @throws UsageError where the file can't be read
embedded::block_diagram::Diagram* read_model(const Options& options, const std::string& shown, Console& console,
                                             formats::DiagnosticList& list);

}  // namespace kinemo::app
