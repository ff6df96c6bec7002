// All that a diagram holds, told in lines of text that tests compare.
#pragma once

#include "embedded/block_diagram/diagram.hpp"

#include <string>

namespace kinemo::test {

/// Blocks with parameters, places, masks and ports, lines, settings and variables; not the diagram's name, places in
/// files, and numbers of ports beyond their order.
std::string account_of(const embedded::block_diagram::Diagram& diagram);

}  // namespace kinemo::test
