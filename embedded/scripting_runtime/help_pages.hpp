#pragma once

// What `help` and `methods` show. Lines are as wide as the display.

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

/// The page of a function, a class (with a list of its methods), a package (with a list of what is in it), or an area
/// of the overview. A name without its packages and class stands for what has it; a list tells where there are several.
/// @throws "kinemo:scripting:runtime" "NoHelp" (name), with the nearest topic as its cause
std::string help_text(const std::string& name);
/// All topics by group.
std::string help_overview();
/// The methods of a class, or what is in a package; sorted.
/// @throws "kinemo:scripting:runtime" "NoMethods" (name), with the nearest class or package as its cause
std::vector<std::string> methods_in(const std::string& name);

}  // namespace embedded::scripting_runtime
