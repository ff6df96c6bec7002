#pragma once

// Help texts of functions, classes and methods, by name. Whoever makes a function known tells its help beside it.

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

struct Help {
  std::string usage;    ///< how it is called, such as "y = sin(x)"; one line for each form
  std::string summary;  ///< one sentence
  std::string details;  ///< what inputs, outputs, units and errors are; may be empty
};

/// Names are those that users type, such as "sin", "kinemo.gl.gt.graph" or "kinemo.gl.Graph.nodes". Replaces an earlier
/// text.
void set_help(const std::string& name, Help help);
/// Null for an unknown name; valid until the name's help is set again.
const Help* find_help(const std::string& name);
/// Sorted.
std::vector<std::string> help_topics();

}  // namespace embedded::scripting_runtime
