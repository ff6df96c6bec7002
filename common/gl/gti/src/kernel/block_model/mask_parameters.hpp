#pragma once

namespace gl::gti {

class BlockData;

/// Adds the variables of the block's mask workspace: always with the evaluated value, and with the text that the user
/// typed where the variable is a dialog parameter of the block's own or an enclosing mask.
void readMaskParameters(double handle, BlockData& out);

}  // namespace gl::gti
