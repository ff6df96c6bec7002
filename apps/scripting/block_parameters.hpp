// The parameters of a block as a dialog would show them.
#pragma once

#include "platform/block_diagram/mask.hpp"

#include <vector>

namespace kinemo::scripting {

/// All that `set_param` sets of a block, with its present values: parameters of the mask, of the dialog, those that
/// subsystems and ports have, and of an opaque subsystem the properties of its component. The unit is the present one.
std::vector<GTMaskParameter> parameters_of(const GTBlock& block);

}  // namespace kinemo::scripting
