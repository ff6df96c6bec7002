// Elements that came from a netlist, or are drawn as such, on their way into one.
#pragma once

#include "formats/spice/element_kinds.hpp"
#include "formats/spice/write_elements.hpp"

namespace kinemo::formats::spice {

/// Writes a component of the kind's block.
void write_spice_element(const ElementWriter& element, const ElementKind& kind);

}  // namespace kinemo::formats::spice
