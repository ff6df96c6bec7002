// The view of `kinemo nets`: which pins share a node, through all levels.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::views {

struct NetPin {
  std::string block;  ///< path without the model's name
  std::string port;
  std::size_t index;  ///< from 1, in the order in which the block's kind lists its ports
};

struct Net {
  std::string name;
  std::vector<NetPin> pins;  ///< by path, then by index
};

/// The nets of a compiled model, by name.
std::vector<Net> make_nets(const gl::core::Model& model, const embedded::block_diagram::Diagram& diagram);

void write_nets_text(std::ostream& out, const std::vector<Net>& nets);
void write_nets_json(std::ostream& out, const std::string& model, const std::vector<Net>& nets);

}  // namespace kinemo::views
