#pragma once

// Where a block stands in its system, and where its ports stand on it.

#include "platform/block_diagram/window.hpp"

#include <boost/optional.hpp>

#include <array>

class GTBlock;

namespace embedded::block_diagram {

/// The property "Position", "[left top right bottom]", as it stands; none without a readable one.
boost::optional<std::array<double, 4>> edges(const GTBlock& block);
/// The same in whole units.
boost::optional<GTBounds> position(const GTBlock& block);
/// The property "Rotation" in degrees with the clock: 0, 90, 180 or 270; 0 without a readable one.
int rotation(const GTBlock& block);

/// Whether the property "Mirror" is "on": left and right are exchanged before the block turns.
bool mirrored(const GTBlock& block);

/// A place on the edge of a block, and the direction away from the block there (one of the four, of length 1).
struct PortPlace {
  double x = 0;
  double y = 0;
  int away_x = 0;
  int away_y = 0;
};

/// Ports of a side are spread evenly. They are mirrored and turn with the block: those of the left stand on top at 90
/// degrees. Where the block's ports rotate in the physical manner the whole edge turns, so that their order may run
/// backward; otherwise ports are counted downward and to the right at every angle.
PortPlace portPlace(const GTBlock& block, const GTBounds& bounds, bool left, int index);

}  // namespace embedded::block_diagram
