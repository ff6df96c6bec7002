#pragma once

// The host's handles: numbers minted by a counter and never used again. The registry belongs to the process; an object
// takes its handle when it is made and gives it back when it ends.

#include "platform/block_diagram/object.hpp"

namespace embedded::block_diagram {

/// Handle that names nothing.
constexpr double no_handle = -1.0;

/// The next handle, which names `object` until `releaseHandle`.
double mintHandle(GantrelObject* object);
void releaseHandle(double handle) noexcept;
/// Whether the number has ever named an object.
bool wasMinted(double handle) noexcept;

}  // namespace embedded::block_diagram
