// Values of a compiled model's parameters as a netlist has them: numbers in SI units, or expressions for them.
#pragma once

#include <optional>
#include <string>

#include "formats/spice/write_expression.hpp"
#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

/// The value in the unit, which is commensurable with its own; the empty unit leaves a value without one as it is and
/// tells others in the base unit of their dimension. Nothing where there is no such number, with the reason in
/// `problem`.
std::optional<WrittenExpression> write_value(const ParameterVariant& value, const units2::core::ExprString& unit,
                                             const ParameterNameLookup& names, std::string& problem);

/// The elements of a row of values, each for itself. Nothing as above.
std::optional<std::vector<WrittenExpression>> write_row(const ParameterVariant& value, const ParameterNameLookup& names,
                                                        std::string& problem);

}  // namespace kinemo::formats::spice
