#include "domains/physical/kinds.hpp"

#include <iterator>

namespace kinemo::physical {

std::vector<BlockKind> all_kinds() {
  std::vector<BlockKind> all;
  for (auto* table : {electrical_kinds, electrical_source_kinds, rotational_kinds, translational_kinds, thermal_kinds,
                      converter_kinds, spice_kinds}) {
    std::vector<BlockKind> kinds = table();
    all.insert(all.end(), std::make_move_iterator(kinds.begin()), std::make_move_iterator(kinds.end()));
  }
  return all;
}

}  // namespace kinemo::physical
