// The model workspace as an object of the runtime, and "data", which lists its variables.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <memory>

namespace embedded::block_diagram {

namespace {

const char* const workspace_class = "Gantrel.ModelWorkspace";

/// Native data of the object: a handle, as the object may outlive the diagram.
using Native = double;

}  // namespace

cvUniquePtr modelWorkspaceObject(const GantrelObject& diagram) {
  return cvUniquePtr(cvCreateNativeObject(workspace_class, std::make_shared<Native>(diagram.getHandle())));
}

void workspaceData(int, Arguments outputs, int nIn, Arguments inputs) {
  kmf::check_num_inputs(1, 1, nIn);
  const std::shared_ptr<void> native = cvIsA(inputs[0], workspace_class) ? cvGetNative(inputs[0]) : nullptr;
  if (!native) kmf::throw_message("kinemo:host:parameters", "NotAWorkspace", cvGetClassName(inputs[0]));
  auto& object = dynamic_cast<GTBlockDiagram&>(objectFrom(*std::static_pointer_cast<Native>(native)));
  const scripting_runtime::Workspace& workspace = object.diagram().workspace();
  const std::vector<std::string> names = workspace.names();
  cvUniquePtr variables(cvCreateStructMatrix(names.size(), names.empty() ? 0 : 1, {"Name", "Value"}));
  for (std::size_t i = 0; i < names.size(); ++i) {
    cvSetField(variables.get(), i, "Name", cvCreateString(names[i]));
    cvSetField(variables.get(), i, "Value", cvCreateSharedCopy(workspace.get(names[i])));
  }
  outputs[0] = variables.release();
}

}  // namespace embedded::block_diagram
