#include "embedded/block_diagram/host_functions.hpp"

#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/icons.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace embedded::block_diagram {

namespace {

void iconStyling(int, Arguments outputs, int nIn, Arguments) {
  kmf::check_num_inputs(0, 0, nIn);
  outputs[0] = cvCreateLogicalScalar(true);
}

struct HostFunction {
  const char* name;
  void (*function)(int, Arguments, int, Arguments);
  const char* usage = nullptr;  ///< null for what only programs call
  const char* summary = nullptr;
};

constexpr HostFunction functions[] = {
    {"get_param", getParam, "x = get_param(object, name)\nc = get_param(objects, name)",
     "A parameter of a block, line, port or diagram, which a path or a handle names; a cell array for several."},
    {"set_param", setParam, "set_param(object, name, value, ...)",
     "Sets parameters of a block or settings of a diagram; all of them, or after an error none. A value is a text, or "
     "a "
     "real number or matrix, which is written exactly, or true or false for a switch; one with a unit sets the "
     "parameter of its unit, too, such as R_unit. Opaque subsystems have parameters of any names, such as "
     "ComponentType, and the empty text takes one away."},
    {"find_system", findSystem,
     "h = find_system(system, 'SearchDepth', 1, 'Variants', 'ActiveVariants', 'LookUnderMasks', 'All', 'FollowLinks', "
     "'on', 'LookUnderReadProtectedSubsystems', 'on', 'BlockType', type)",
     "Handles of the blocks of one type in a system, as a column. blocks(system) is the list for people."},
    {"data", workspaceData, "s = data(workspace)",
     "The variables of a model's workspace as structures with the fields Name and Value."},
    {"Gantrel.dd.open", openDictionaryObject, "d = Gantrel.dd.open(file)",
     "Opens a data dictionary, in which evalin can evaluate expressions."},
    {"gl.gti.runtimeParameters", runtimeParameters, "names = gl.gti.runtimeParameters(model)",
     "Names of a model's variables that are marked as run-time parameters, as a column of texts."},
    {"gl.gti.resolveRuntimeParameters", resolveRuntimeParameters, "s = gl.gti.resolveRuntimeParameters(model, names)",
     "Values of run-time parameters: a structure with the fields Map (Name, Value) and NonValue."},
    {"gl.gti.internal.recursiveMaskNames", recursiveMaskNames},
    {"verdane.internal.enableIconStyling", iconStyling},
};

}  // namespace

void registerHostFunctions() {
  for (const HostFunction& entry : functions) {
    kmf::register_corvane_function(entry.name, entry.function);
    if (entry.usage == nullptr) continue;
    scripting_runtime::set_help(entry.name, {entry.usage, entry.summary, "", "Diagrams"});
  }
  registerDictionaryClass();
}

void unregisterHostFunctions() {
  for (const HostFunction& entry : functions) {
    kmf::unregister_corvane_function(entry.name);
    scripting_runtime::forget_help(entry.name);
  }
  closeDictionaries();
  forgetIcons();
}

}  // namespace embedded::block_diagram
