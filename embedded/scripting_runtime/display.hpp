#pragma once

// Values as text for people: results of statements, disp, num2str, sprintf.

#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace embedded::scripting_runtime {

/// A number with at most `digits` significant digits, without needless zeros; "NaN", "Inf", "-Inf".
std::string number_text(double value, int digits);
/// The same with all the digits that tell it from its neighbours, as errors do.
std::string number_text(double value);
/// A number with `digits` significant digits, as %g of sprintf writes it.
std::string significant_text(double value, int digits);
/// All digits of a whole number, up to where a double has no more of them.
std::string whole_number_text(double value);
/// The significant digits that texts give a number by themselves: four behind the point, from 5 to 16 in all.
int usual_digits(double value);
/// A value as `disp` shows it, without a name; lines are parted by line ends. UTF-8. Objects are shown as the hook of
/// their class system tells; all other ways to show a value end here.
std::string display_text(const cvArray_tag* array);
/// A result as a statement shows it: "x = 5", or "x =" above the lines of the value.
std::string named_text(const std::string& name, const cvArray_tag* array);
/// A value on one line of at most `width` characters, as it stands in cells and structures: "[1 2; 3 4]", "'abc'", and
/// where that is too long "'the begin...'" and "[100x100 double]".
std::string inline_text(const cvArray_tag* array, std::size_t width);
/// The same behind a name, with line ends of texts as "\\n": texts of up to 200 characters are whole, also where they
/// are wider.
std::string text_beside(const cvArray_tag* array, std::size_t width);
/// "[2x3 double]"
std::string described(const cvArray_tag* array);
/// The template filled with the arguments; it is repeated while arguments are left.
/// @throws "kinemo:scripting:runtime" "InvalidFormat" (template), "ComplexInTemplate"
std::string format_text(const std::string& format, const std::vector<const cvArray_tag*>& arguments);

constexpr int short_digits = 5;
constexpr int long_digits = 16;

/// What a display may take. Wider matrices are shown by groups of columns, longer ones are cut with a note.
struct DisplayLimits {
  std::size_t width = 80;     ///< characters of a line
  std::size_t lines = 200;    ///< of one value
  int digits = short_digits;  ///< significant ones of numbers: short_digits or long_digits
};
DisplayLimits& display_limits();

/// Where output goes to, as it is, line ends included; standard output at first.
using DisplaySink = void (*)(const std::string& text);
void set_display_sink(DisplaySink sink);
/// A text and a line end.
void display(const std::string& text);
/// A text alone.
void write_output(const std::string& text);

/// Where errors and what `fprintf(2, …)` writes go to; standard error at first.
void set_error_sink(DisplaySink sink);
void write_error_output(const std::string& text);

}  // namespace embedded::scripting_runtime
