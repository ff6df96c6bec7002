// Values of a compiled model's parameters as a netlist has them: numbers in SI units, or expressions for them.
#pragma once

#include <optional>
#include <string>

#include "formats/spice/write_expression.hpp"
#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

/// The value told in the unit; where that is empty, in the base unit of its dimension. A bare number is told in it
/// already. Nothing where there is no such number, with the reason in
/// `problem`.
std::optional<WrittenExpression> write_value(const ParameterVariant& value, const units2::core::AbstractExpr& unit,
                                             const ParameterNameLookup& names, std::string& problem);

/// The elements of a row of values, each for itself. Nothing as above.
std::optional<std::vector<WrittenExpression>> write_row(const ParameterVariant& value, const ParameterNameLookup& names,
                                                        std::string& problem);

}  // namespace kinemo::formats::spice
