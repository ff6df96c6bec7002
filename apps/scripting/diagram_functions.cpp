#include "apps/scripting/diagram_functions.hpp"

#include "apps/scripting/diagram_files.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/text_candidates.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "formats/diagram/variables.hpp"

#include <algorithm>
#include <utility>

namespace kinemo::scripting {

namespace {

std::vector<DiagramFunction> all_functions() {
  std::vector<DiagramFunction> all;
  for (const auto list : {file_functions, block_functions, list_functions, port_functions, line_functions,
                          mask_functions, setting_functions, model_functions, picture_functions}) {
    const std::vector<DiagramFunction> rows = list();
    all.insert(all.end(), rows.begin(), rows.end());
  }
  return all;
}

/// Values with units reach the functions as they are.
kmf::CvFunction function_of(const DiagramFunction& row) {
  return [name = row.name, least = row.least_inputs, most = row.most_inputs, run = row.run](
             int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
    kmf::check_num_inputs(least, most, nIn);
    embedded::scripting_runtime::refuse_in_model_evaluation(name);
    const embedded::scripting_runtime::ModelEvaluation evaluation;
    Call call(name, nOut, nIn, inputs);
    run(call);
    const auto slots = static_cast<std::size_t>(std::max(nOut, 1));
    for (std::size_t i = 0; i < std::min(slots, call.outputs.size()); ++i) outputs[i] = call.outputs[i].release();
  };
}

}  // namespace

void register_diagram_functions() {
  formats::diagram::install_dictionary_reader();
  watch_diagram_files();
  embedded::scripting_runtime::set_text_candidates(diagram_text_candidates);
  for (const DiagramFunction& row : all_functions()) {
    kmf::register_corvane_function(row.name, function_of(row));
    embedded::scripting_runtime::Help help = row.help;
    help.area = "Diagrams";
    embedded::scripting_runtime::set_help(row.name, std::move(help));
  }
}

void unregister_diagram_functions() {
  embedded::scripting_runtime::set_text_candidates({});
  for (const DiagramFunction& row : all_functions()) {
    kmf::unregister_corvane_function(row.name);
    embedded::scripting_runtime::forget_help(row.name);
  }
  forget_diagram_files();
}

}  // namespace kinemo::scripting
