// What a picture points at.
#pragma once

#include "platform/block_diagram/window.hpp"

#include <unordered_set>
#include <vector>

class GTBlock;
class gtPort;

namespace kinemo::views::picture {

struct Marks {
  GTColor color{0.85, 0.1, 0.1, -1, 0};  ///< of outlines
  GTColor light{1.0, 0.8, 0.8, -1, 0};   ///< under lines
  std::unordered_set<const GTBlock*> blocks;
  std::unordered_set<const gtPort*> ports;
  std::unordered_set<const std::vector<gtPort*>*> nets;  ///< as `netOf` gives them

  /// The net of a port in every system that it reaches, with its ports and the subsystems that it runs through.
  void add_net(gtPort& port);
  /// A block, and the subsystems around it.
  void add_block(const GTBlock& block);
};

}  // namespace kinemo::views::picture
