#pragma once

// The help texts of the built-in functions, by area: one list for each in a file of its own.

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

struct HelpRow {
  const char* name;
  const char* usage;         ///< one line for each form
  const char* summary;       ///< one sentence
  const char* details = "";  ///< may be empty
};

struct HelpArea {
  std::string title;
  std::vector<HelpRow> rows;
};

/// In the order in which lists show them.
std::vector<HelpArea> built_in_help();

HelpArea constant_help();
HelpArea array_help();
HelpArea mathematics_help();
HelpArea reduction_help();
HelpArea linear_algebra_help();
HelpArea class_help();
HelpArea text_help();
HelpArea container_help();
HelpArea call_help();
HelpArea session_help();

}  // namespace embedded::scripting_runtime
