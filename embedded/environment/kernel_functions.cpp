#include "embedded/environment/kernel_functions.hpp"

#include "embedded/scripting_runtime/help.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <iterator>
#include <stdexcept>
#include <string>

/// Of the kernel, which stands above the platform: null where the program has none.
extern "C" __attribute__((weak)) const cvFunctionTable* QueryCVFcnTable_kinemo_common_gl_gti_kernel();

namespace embedded {

namespace {

constexpr char kGroup[] = "kinemo:host:modules";
constexpr cvFunctionTable kExpected{nullptr, 0x3defa4fb, 0x5a7a3667, 3};

struct KernelFunction {
  const char* name;
  const char* usage;
  const char* summary;
  const char* details;
};

/// In the order of the table.
constexpr KernelFunction kFunctions[] = {
    {"gl.gti.iconStyling", "on = gl.gti.iconStyling()\non = gl.gti.iconStyling(true)",
     "Whether vector icons of blocks are drawn by the host's icon service, and a switch for it.",
     "One logical value for the whole program, false at first; the program kinemo begins with true where it draws or "
     "takes commands: run, repl, render and check with a picture. While it is false, blocks with vector icons show "
     "their texts. Turning it off is seen by all blocks at once, turning it on by those that take their icon "
     "afterwards: a block from before is a bare frame, unless another one has brought the same icon."},
    {"gl.gti.loggingSupported", "yes = gl.gti.loggingSupported(block)", "Whether a block can log simulation data.",
     "The input is a block's handle. False for anything but a core block whose kind supports it."},
    {"gl.gti.portName", "name = gl.gti.portName(block, port)", "The identifier of a port of a block.",
     "The inputs are the handles of a block and of one of its ports, as get_param(block, 'PortHandles') tells them. "
     "The "
     "empty text for a block that is no core block."},
};

/// Methods of the kernel's package, which makes them known itself.
constexpr KernelFunction kMethods[] = {
    {"kinemo.gl.gt.graph", "g = kinemo.gl.gt.graph(domain, model)", "The graph of a compiled model.",
     "The inputs are texts: the name of a domain, such as 'physical', and of an open model. The model is translated "
     "anew "
     "from what was recorded at its last compile. The result is an object of the class kinemo.gl.Graph, which nothing "
     "changes afterwards."},
    {"kinemo.gl.gt.runtimeParameterInfo", "r = kinemo.gl.gt.runtimeParameterInfo(domain, model)",
     "The run-time parameters of a compiled model.",
     "The inputs are texts: the name of a domain, such as 'physical', and of an open model. The model is translated "
     "anew "
     "from what was recorded at its last compile. The result is an object of the class "
     "kinemo.gl.RuntimeParameterInfo."},
};

void set_help(const KernelFunction& function) {
  scripting_runtime::set_help(function.name, {function.usage, function.summary, function.details});
}

[[noreturn]] void refuse(const std::string& difference) {
  kmf::throw_message(kGroup, "FunctionTableDoesNotFit", difference);
}

/// Marks first: other words of a table that isn't ours mean nothing.
void check(const cvFunctionTable* given) {
  if (given == nullptr) refuse("no table");
  const cvFunctionTable& table = *given;
  if (table.firstMark != kExpected.firstMark || table.secondMark != kExpected.secondMark) refuse("marks");
  if (table.version != kExpected.version) refuse("version " + std::to_string(table.version));
  if (table.entries == nullptr) refuse("no list of functions");
  for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
    if (table.entries[i] == nullptr) refuse(std::to_string(i) + " functions");
  }
  if (table.entries[std::size(kFunctions)] != nullptr) refuse("more functions");
}

/// The kernel looks a port up without asking whether the block has it; at a prompt that is an error like others.
kmf::CvFunction guarded(const char* name, cvEntryFunction entry) {
  return [name, entry](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
    try {
      entry(nOut, outputs, nIn, inputs);
    } catch (const std::out_of_range&) {
      kmf::throw_message(kGroup, "UnknownPortHandle", std::string(name));
    }
  };
}

}  // namespace

QueryFunctionTable* linkedKernelTable() noexcept {
  return QueryCVFcnTable_kinemo_common_gl_gti_kernel;
}

void registerKernelFunctions(const cvFunctionTable* table) {
  check(table);
  for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
    const KernelFunction& function = kFunctions[i];
    kmf::register_corvane_function(function.name, guarded(function.name, table->entries[i]));
    set_help(function);
  }
  for (const KernelFunction& method : kMethods) set_help(method);
}

void unregisterKernelFunctions() {
  for (const KernelFunction& function : kFunctions) {
    kmf::unregister_corvane_function(function.name);
    scripting_runtime::forget_help(function.name);
  }
  for (const KernelFunction& method : kMethods) scripting_runtime::forget_help(method.name);
}

}  // namespace embedded
