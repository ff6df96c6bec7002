#include "formats/spice/element_kinds.hpp"

#include <algorithm>

namespace kinemo::formats::spice {

const ElementKind* find_element_kind(char letter) {
  const auto found = std::find_if(element_kinds.begin(), element_kinds.end(),
                                  [letter](const ElementKind& kind) { return kind.letter == letter; });
  return found == element_kinds.end() ? nullptr : &*found;
}

}  // namespace kinemo::formats::spice
