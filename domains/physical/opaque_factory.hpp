#pragma once

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/component_embedding.hpp"

namespace kinemo::physical {

/// Block parameters of an opaque subsystem that the factory reads.
extern const char component_type_parameter[];
/// Types of its ports: entries separated by blanks or commas, each "port=type", or "type" alone for all other ports. A
/// type of one word, such as "thermal", belongs to this domain. Electrical where nothing is said.
extern const char port_types_parameter[];

/// Makes the component of an opaque subsystem: its type is what the block parameter "ComponentType" says; it has one
/// connector for each connected port, in the order of the ports' names, and the parameters of the subsystem's mask, a
/// number NAME told in the unit of NAME_unit.
/// @throws "kinemo:physical:opaque" "MissingComponentType" (), "InvalidComponentType" (text), "InvalidPortType" (entry)
/// and what `ParameterReader` raises
gl::gti::ComponentEmbedding make_opaque_component(const gl::gti::BlockData& data);

}  // namespace kinemo::physical
