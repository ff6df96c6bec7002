#pragma once

// Texts for people, laid out in lines. All are UTF-8, and widths are counted in characters.

#include <cstddef>
#include <string>

namespace embedded::scripting_runtime {

std::size_t text_width(const std::string& text);
/// Lines of at most `width` characters, broken between words; a word that is longer stands on a line of its own. Lines
/// of the text stay, and each begins with `indent` blanks and its own. No line end behind the last one.
std::string wrapped(const std::string& text, std::size_t width, std::size_t indent = 0);
/// The lines of a text in one, which is cut with "..." where it would be longer than `width`.
std::string on_one_line(const std::string& text, std::size_t width);

}  // namespace embedded::scripting_runtime
