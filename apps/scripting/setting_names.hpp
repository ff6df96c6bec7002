// Names of settings that no one asks for.
#pragma once

#include "formats/diagnostics.hpp"

#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::scripting {

/// Warns of each setting of a compiled model whose name is nearly that of one which a domain asked for: such a slip of
/// the pen would go unseen, since a diagram may have settings that nobody asks for.
void warn_of_setting_names(const embedded::block_diagram::Diagram& diagram, const std::vector<std::string>& domains,
                           const std::string& file, formats::DiagnosticList& list);

}  // namespace kinemo::scripting
