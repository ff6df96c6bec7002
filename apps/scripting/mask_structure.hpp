// Masks as structures of the scripting language, and back.
#pragma once

#include "apps/scripting/diagram_inputs.hpp"
#include "platform/block_diagram/mask.hpp"

#include <boost/shared_ptr.hpp>

namespace kinemo::scripting {

/// A structure with `type`, `description` and `parameters`, which is a column of structures with `name`, `value`,
/// `unit`, `prompt`, `kind` and `choices`.
cvUniquePtr structure_of(const GTMaskDefinition& mask);

/// Such a column of structures. Empty where there are none.
cvUniquePtr structures_of(const std::vector<GTMaskParameter>& parameters);

/// The mask that such a structure tells. Fields that are absent or [] say nothing; a parameter has a name and a value.
/// @throws "NotAMask" (class), "NotMaskParameters" (class), "UnknownMaskField" (field, nearest or "", valid fields),
/// "MaskParameterWithoutName" (number), "NotAText", "MaskParameterWithoutValue" (name), "MaskParameterTwice" (name),
/// and as MaskParameterEdit does
boost::shared_ptr<GTMaskDefinition> mask_of(const cvArray_tag* structure, const InputPlace& place);

}  // namespace kinemo::scripting
