#pragma once

#include "domains/physical/block_kind.hpp"
#include "platform/block_diagram/mask.hpp"

#include <boost/shared_ptr.hpp>

namespace kinemo::physical {

/// The mask that all blocks of a kind share: the kind's parameters in order, and behind each expression its partners,
/// the unit, whether it is fixed at compile time or stays tunable at run time, and whether it follows a setting of the
/// model where it can.
boost::shared_ptr<const GTMaskDefinition> make_mask_definition(const BlockKind& kind);

}  // namespace kinemo::physical
