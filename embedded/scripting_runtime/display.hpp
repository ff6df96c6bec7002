#pragma once

// Values as text for people: num2str, disp, sprintf.

#include "platform/scripting_array/scripting_array.hpp"

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

/// A number with at most `digits` significant digits, without needless zeros; "NaN", "Inf", "-Inf".
std::string number_text(double value, int digits);
/// A value as a prompt shows it, without a name; lines are parted by line ends. UTF-8.
std::string display_text(const cvArray_tag* array);
/// The template filled with the arguments; it is repeated while arguments are left.
/// @throws "kinemo:scripting:runtime" "InvalidFormat" (template)
std::string format_text(const std::string& format, const std::vector<const cvArray_tag*>& arguments);

/// Where `disp` writes to; standard output at first.
using DisplaySink = void (*)(const std::string& text);
void set_display_sink(DisplaySink sink);
void display(const std::string& text);

}  // namespace embedded::scripting_runtime
