// Expressions of a compiled model in the parameter language of netlists.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "embedded/expression/tree.hpp"

namespace kinemo::formats::spice {

/// The name that a parameter has in the netlist; nothing where it has none, with the reason in `problem`.
using ParameterNameLookup = std::function<std::optional<std::string>(const std::string& name, std::string& problem)>;

/// A text of the netlist's language and how it stands as an operand.
struct WrittenExpression {
  std::string text;
  bool is_number = false;  ///< a number and nothing else, so that it needs no braces
};

/// Writes the expression without braces. Nothing where the language can't say it, with the reason in `problem`. What
/// the simulator reads otherwise than its manual says is written in a way that it reads right: a power as `pow`, and
/// signs inside of brackets.
std::optional<WrittenExpression> write_expression(const embedded::expression::Node& tree,
                                                  const ParameterNameLookup& names, std::string& problem);

/// As a value on a card: the number, or the expression in braces.
std::string card_value(const WrittenExpression& expression);

/// How the host's functions are said: $1, $2, ... stand for the arguments. Null where there is no way, by name and
/// count of arguments.
struct WrittenFunction {
  std::string_view name;
  std::size_t arguments;
  std::string_view form;
};
const WrittenFunction* find_written_function(std::string_view name, std::size_t arguments);
/// Whether the host's function can be said for some count of arguments.
bool is_written_function(std::string_view name);

}  // namespace kinemo::formats::spice
