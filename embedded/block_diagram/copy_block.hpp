#pragma once

// Copies of blocks, within a diagram or into another one.

#include "embedded/block_diagram/diagram.hpp"

namespace embedded::block_diagram {

/// Places a copy of a block in a system of any open diagram, which may lie inside the block itself. Parameters, masks,
/// flags, properties and all that lies in a subsystem are those of the block; lines inside are copied, those at its
/// ports are not. Blocks of the library are cloned by their own class and check their parameters. A copied I/O port
/// keeps its side and order. After an error nothing was placed.
/// @throws "kinemo:host:diagram" "DuplicateBlock" (name, system path), "EmptyBlockName" (system path), "PortAtTop"
/// (name), "TooDeep" (limit), and what a block's own check raises
GTBlock& copyBlock(const GTBlock& block, System& system, const ustring& name);

}  // namespace embedded::block_diagram
