// Blocks, systems and nets of a diagram by what a user types. Nothing is owned here.
#pragma once

#include <string>

class GTBlock;
class gtPort;

namespace embedded::block_diagram {
class Diagram;
class System;
}  // namespace embedded::block_diagram

namespace kinemo::views {

/// What is wrong with a name, and what would have been valid.
struct UnknownName {
  std::string text;
  std::string valid;
};

/// The path without the model's name in front, unless it leads to a block as it stands.
std::string inner_path(const embedded::block_diagram::Diagram& diagram, const std::string& path);

/// The block of a path, which may begin with the model's name. Null, and `unknown` filled, when there is none.
const GTBlock* find_block(const embedded::block_diagram::Diagram& diagram, const std::string& path,
                          UnknownName& unknown);

/// The inside of the block of a path; that of the diagram for the empty path and for the model's name. Null, and
/// `unknown` filled, when there is none.
embedded::block_diagram::System* find_system(embedded::block_diagram::Diagram& diagram, const std::string& path,
                                             UnknownName& unknown);

/// A port of the net that a text names: "path.port", the path of a named line such as "x1/out", or that of a block with
/// one port. Null, and `unknown`
/// filled, when there is none.
gtPort* find_net(embedded::block_diagram::Diagram& diagram, const std::string& name, UnknownName& unknown);

}  // namespace kinemo::views
