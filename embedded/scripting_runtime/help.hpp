#pragma once

// Help texts of functions, classes and methods, by name. Whoever makes a function known tells its help beside it.

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

struct Help {
  std::string usage;      ///< how it is called, such as "y = sin(x)"; one line for each form
  std::string summary;    ///< one sentence
  std::string details;    ///< what inputs, outputs, units and errors are; may be empty
  std::string area = {};  ///< what lists of functions put it under; empty: the package in its name
};

/// Names are those that users type, such as "sin", "kinemo.gl.gt.graph" or "kinemo.gl.Graph.nodes". Replaces an earlier
/// text.
void set_help(const std::string& name, Help help);
/// For who takes the function back. Unknown names are left alone.
void forget_help(const std::string& name);
/// Null for an unknown name; valid until the name's help is set again or forgotten.
const Help* find_help(const std::string& name);
/// Sorted.
std::vector<std::string> help_topics();

/// Topics under one heading.
struct HelpGroup {
  std::string title;
  std::vector<std::string> topics;
};
/// All topics: first the areas of the built-in functions in their order, then further ones by title.
std::vector<HelpGroup> help_groups();

}  // namespace embedded::scripting_runtime
