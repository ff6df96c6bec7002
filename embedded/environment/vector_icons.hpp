#pragma once

namespace embedded {

/// Turns the kernel's switch for vector icons, which is off at first. Blocks take their icons when they are made, so
/// programs that draw turn it on before. An environment must exist.
void show_vector_icons(bool show = true);

}  // namespace embedded
