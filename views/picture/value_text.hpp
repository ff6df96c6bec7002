// The value that a picture shows under the name of a block.
#pragma once

#include "platform/foundation/ustring.hpp"

class GTBlock;

namespace kinemo::views::picture {

/// What tells most of a block: the name of its model card, its waveform, or its first number with the unit. Numbers
/// have at most four digits and the prefixes of units (1.00001e-05 F is told as 10 uF); anything else stands as the
/// user wrote it, shortened. Empty for subsystems, I/O ports and blocks without parameters.
ustring value_text(const GTBlock& block);

}  // namespace kinemo::views::picture
