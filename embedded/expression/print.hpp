#pragma once

// From tree to text, and back by `parse` to an equal tree.

#include "embedded/expression/tree.hpp"

#include <string>
#include <string_view>

namespace embedded::expression {

/// The tree on one line, UTF-8, with no more brackets than the precedence needs.
std::string print(const Node& tree);
inline std::string print(const Tree& tree) {
  return print(*tree);
}

/// UTF-8 with its control characters, which a terminal would obey, as "\x1b" and the like. Those of `kept` stay.
std::string without_controls(std::string_view text, std::string_view kept = "");

/// A text as it is written in an expression: between single quotes, those inside doubled.
std::string print_text(std::string_view text);

/// The shortest text that reads back to the same number: "0.1", "1e6", "1e999" for infinity.
std::string print_number(double value);

}  // namespace embedded::expression
