#pragma once

#include "domains/physical/kinds.hpp"

namespace kinemo::physical {

/// A kind as the guide for domain authors shows it.
inline std::vector<BlockKind> fuse_kinds() {
  // [guide: kind]
  return {
      {"fuse",
       "Fuse",
       "Resistor that opens for good when its current has been too high for too long.",
       {left("p", "electrical", "+"), right("n", "electrical", "-"), right("h", "thermal", "H")},
       {number("R", "Resistance", "10", "mOhm"), number("I_rated", "Rated current", "1", "A"),
        choice("speed", "Speed", {"fast", "slow"}), text("maker", "Maker")}},
  };
  // [guide]
}

}  // namespace kinemo::physical
