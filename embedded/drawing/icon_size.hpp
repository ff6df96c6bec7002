#pragma once

#include "embedded/drawing/canvas.hpp"

#include <boost/optional.hpp>

namespace embedded::drawing {

/// The size of the page of a block's vector icon, in units of the diagram, reduced to a thousand of them: the size
/// that suits a block which isn't turned. None for a block whose style name is no registered icon, and where the file
/// can't be read or says no size that a block could have. Sizes are kept for the whole process, each until its file
/// changes, so that asking for many blocks is cheap.
boost::optional<Size> natural_size(const GTBlock& block);

}  // namespace embedded::drawing
