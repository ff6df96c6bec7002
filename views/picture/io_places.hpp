// Places of I/O port blocks in a system whose other blocks are all placed by the user: files give them none.
#pragma once

#include "views/layout/layout.hpp"
#include "views/picture/block_shape.hpp"

#include <vector>

namespace kinemo::views::picture {

/// Left ports go to the left of everything, right ones to the right, each as high as what it is joined to. Where
/// another block has no place, this is left to the layout. `nets` are by the shapes.
void place_io_ports(std::vector<BlockShape>& shapes, const std::vector<layout::Net>& nets);

}  // namespace kinemo::views::picture
