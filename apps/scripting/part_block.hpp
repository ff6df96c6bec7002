// Blocks whose contents stand in a part's file.
#pragma once

#include "apps/scripting/diagram_inputs.hpp"

#include <string>

namespace kinemo::scripting {

/// Whether a block's type is the path of a file.
bool is_part(const std::string& type);
/// Places a subsystem with the contents of a file, to which it is linked. Warnings of the reader are raised.
/// @throws "CannotPlacePart" (file, name), with each error of the file as a cause
GTBlock& place_part(host::System& system, const ustring& name, const std::string& file);

}  // namespace kinemo::scripting
