// Settings of diagrams, beside get_param and set_param.

#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "platform/foundation/exception.hpp"

namespace kinemo::scripting {

namespace {

std::vector<std::string> names_of(const host::Diagram& diagram) {
  std::vector<std::string> names;
  for (const auto& [name, text] : diagram.parameters()) names.push_back(name);
  return names;
}

void settings(Call& call) {
  const host::Diagram& diagram = diagram_from(call, 0);
  cvUniquePtr told(cvCreateStructMatrix(1, 1, names_of(diagram)));
  for (const auto& [name, text] : diagram.parameters()) {
    cvSetField(told.get(), 0, name.c_str(), cvCreateUString(text));
  }
  call.give(std::move(told));
}

void delete_setting(Call& call) {
  host::Diagram& diagram = diagram_from(call, 0);
  const std::string name = text_from(call, 1);
  if (host::clearSetting(diagram, name)) return;
  kmf::throw_message(diagram_messages, "NoSetting", name, diagram.name(), host::nearestName(name, names_of(diagram)));
}

}  // namespace

std::vector<DiagramFunction> setting_functions() {
  return {{"settings",
           1,
           1,
           settings,
           {"s = settings(diagram)", "Tells the settings of a diagram, as a structure of texts.",
            "set_param(diagram, setting, text, ...) sets them."}},
          {"delete_setting",
           2,
           2,
           delete_setting,
           {"delete_setting(diagram, name)", "Takes a setting out of a diagram.",
            "DataDictionary and InitializeInteractiveRuns, which every diagram has, become what they are in a new "
            "one."}}};
}

}  // namespace kinemo::scripting
