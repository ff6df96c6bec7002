// Places for the names at stubs, where lines have left no room for them.
#pragma once

#include "views/picture/label_room.hpp"

namespace kinemo::views::picture {

/// Moves the names of stubs that something covers: to another distance from the pin, or beside the line of the stub.
/// Where there is no free place they lie on lines, but on no blocks or texts if there is any place without.
void place_stub_labels(LabelRoom& room, layout::Drawing& drawing);

}  // namespace kinemo::views::picture
