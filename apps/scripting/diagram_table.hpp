// The rows of the diagram functions, listed by area. Each area is a file of its own.
#pragma once

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/help.hpp"

#include <vector>

namespace kinemo::scripting {

using embedded::scripting_runtime::any_number;
using embedded::scripting_runtime::Call;

struct DiagramFunction {
  const char* name;
  int least_inputs;
  int most_inputs;
  void (*run)(Call&);
  embedded::scripting_runtime::Help help;
};

std::vector<DiagramFunction> file_functions();     // new_diagram open_diagram save_diagram close_diagram diagrams
std::vector<DiagramFunction> block_functions();    // add_block copy_block delete_block rename_block place ports
std::vector<DiagramFunction> list_functions();     // blocks lines parameters variables
std::vector<DiagramFunction> line_functions();     // add_line delete_line name_line
std::vector<DiagramFunction> mask_functions();     // mask set_mask add_mask_parameter …
std::vector<DiagramFunction> setting_functions();  // settings delete_setting
std::vector<DiagramFunction> port_functions();     // add_ports
std::vector<DiagramFunction> picture_functions();  // render_diagram
std::vector<DiagramFunction> model_functions();    // set_variable compile_diagram check_diagram nets …

}  // namespace kinemo::scripting
