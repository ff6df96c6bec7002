#pragma once

// Matrices of numbers as lines of text.

#include "embedded/scripting_runtime/numbers.hpp"

#include <string>

namespace embedded::scripting_runtime {

/// One element with the significant digits of `display_limits()`. Zeros at its end stay where the text without them
/// would look like another number: 1.0000e+05 is 100000.5. Integer classes show all digits.
std::string element_text(const Numbers& numbers, std::size_t i);
/// An array with elements: columns aligned, groups of columns where a line would be too long, one part for each page of
/// an array of more dimensions, cut with a note where there are more lines than a display may take.
std::string matrix_text(const Numbers& numbers);

}  // namespace embedded::scripting_runtime
