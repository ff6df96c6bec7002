// Which models and definitions the cards of a definition see: their own, those of the definitions around, those of the
// top level.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

/// The model of that name; of a binned model (`name.1`, `name.2`, ...) the first bin. Null when there is none.
const Model* find_model(const Netlist& netlist, const Definition& scope, const std::string& name);
/// Index of the definition that a call of that name means, -1 when there is none.
std::int32_t find_definition(const Netlist& netlist, const Definition& scope, const std::string& name);

/// Visible names, for suggestions.
std::vector<std::string_view> visible_models(const Netlist& netlist, const Definition& scope);
std::vector<std::string_view> visible_definitions(const Netlist& netlist, const Definition& scope);

}  // namespace kinemo::formats::spice
