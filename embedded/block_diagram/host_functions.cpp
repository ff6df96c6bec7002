#include "embedded/block_diagram/host_functions.hpp"

#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/icons.hpp"
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
};

constexpr HostFunction functions[] = {
    {"get_param", getParam},
    {"set_param", setParam},
    {"find_system", findSystem},
    {"data", workspaceData},
    {"Gantrel.dd.open", openDictionaryObject},
    {"gl.gti.runtimeParameters", runtimeParameters},
    {"gl.gti.resolveRuntimeParameters", resolveRuntimeParameters},
    {"gl.gti.internal.recursiveMaskNames", recursiveMaskNames},
    {"verdane.internal.enableIconStyling", iconStyling},
};

}  // namespace

void registerHostFunctions() {
  for (const HostFunction& entry : functions) kmf::register_corvane_function(entry.name, entry.function);
  registerDictionaryClass();
}

void unregisterHostFunctions() {
  for (const HostFunction& entry : functions) kmf::unregister_corvane_function(entry.name);
  closeDictionaries();
  forgetIcons();
}

}  // namespace embedded::block_diagram
