// Expressions of a compiled model in the parameter language of netlists.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "embedded/expression/tree.hpp"
#include "platform/units/units.hpp"

namespace kinemo::formats::spice {

/// A parameter as the netlist has it: its value is told in the base unit of its dimension.
struct ParameterName {
  std::string name;
  units2::core::AbstractExpr unit = {};  ///< in which the model tells it; the empty one for a bare number
};

/// Finds what stands for a name; nothing where the netlist has no such parameter, with the reason in `problem`.
using ParameterNameLookup = std::function<std::optional<ParameterName>(const std::string& name, std::string& problem)>;

/// A text of the netlist's language and how it stands as an operand.
struct WrittenExpression {
  std::string text;
  bool is_number = false;                ///< a number and nothing else, so that it needs no braces
  units2::core::AbstractExpr unit = {};  ///< in which the model tells it; the text is in the base unit then
};

/// Writes the expression without braces, told in `told`, for bare numbers from `bound`; where `told` is empty, in the
/// base unit of its dimension. Nothing where the language can't say it, with the reason in `problem`. What the
/// simulator reads otherwise than its manual says is written in a way that it reads right: a power as `pow`, and signs
/// inside of brackets.
std::optional<WrittenExpression> write_expression(const embedded::expression::Node& tree,
                                                  const units2::core::AbstractExpr& bound,
                                                  const units2::core::AbstractExpr& told,
                                                  const ParameterNameLookup& names, std::string& problem);

/// As a value on a card: the number, or the expression in braces.
std::string card_value(const WrittenExpression& expression);

}  // namespace kinemo::formats::spice
