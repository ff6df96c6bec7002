// Texts of cards on their way into another netlist.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "formats/spice/write_expression.hpp"

namespace kinemo::formats::spice {

/// Puts values in place of the marks {1}, {2}, ...: a number or an expression in braces, inside of braces in brackets.
/// Nothing where a mark has no value.
std::optional<std::string> with_values(const std::string& text, const std::vector<WrittenExpression>& values);

/// Finds the name with which something is written; nothing leaves it as it is.
using TextNames = std::function<std::optional<std::string>(const std::string& name)>;
/// Renames what stands in v(...) and i(...).
std::string with_circuit_names(const std::string& text, const TextNames& nodes, const TextNames& elements);

/// Breaks a card into lines at blanks that stand in no brackets, braces or quotes.
std::string folded(const std::string& card);

}  // namespace kinemo::formats::spice
