#pragma once

// Generated diagrams of the shapes in which real models grow. Each has `blocks` resistors, spread over `depth` levels
// where the shape has any.

#include <cstddef>
#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace benchmarks {

using embedded::block_diagram::Diagram;

/// All blocks at the top, in a chain from the reference.
Diagram& flat(const std::string& name, std::size_t blocks);
/// Resistors along and across, at the top: every inner node joins three.
Diagram& ladder(const std::string& name, std::size_t blocks);
/// `depth` subsystems inside each other, the blocks spread evenly over the levels.
Diagram& chain(const std::string& name, std::size_t blocks, std::size_t depth);
/// A binary tree of subsystems with a resistor pair at each leaf.
Diagram& tree(const std::string& name, std::size_t blocks);
/// A row of subsystems that are plain wires, a resistor behind each.
Diagram& wires(const std::string& name, std::size_t blocks);
/// One net that joins a port of every block.
Diagram& star(const std::string& name, std::size_t blocks);

/// The same with a run-time variable x in the workspace, on which the resistance of every block depends through the
/// masks of all subsystems around it. `depth` 0: all blocks at the top, each with a text of its own. Up to 10: a tree
/// of subsystems. More: that many inside each other.
Diagram& tunable(const std::string& name, std::size_t blocks, std::size_t depth);

/// The binary tree as a netlist whose definitions are shared by all instances.
std::string tree_netlist(std::size_t blocks);

}  // namespace benchmarks
