// Which file an open diagram belongs to: the one that it was read from or saved to last. Forgotten when the diagram is
// closed.
#pragma once

#include <string>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::scripting {

/// From here on, diagrams that close are forgotten.
void watch_diagram_files();
void forget_diagram_files();

void keep_diagram_file(const embedded::block_diagram::Diagram& diagram, const std::string& file);
/// Empty for none.
std::string diagram_file(const embedded::block_diagram::Diagram& diagram);

}  // namespace kinemo::scripting
