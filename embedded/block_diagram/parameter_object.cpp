#include "embedded/block_diagram/parameter_object.hpp"

#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <utility>

namespace embedded::block_diagram {

const char* const parameter_class = "Gantrel.Parameter";

cvUniquePtr parameterObject(cvUniquePtr value, const std::string& unit, bool runtime) {
  cvUniquePtr object(cvCreateObject(parameter_class));
  if (isParameterObject(value.get())) value = plainValue(value.get());
  cvSetProperty(object.get(), 0, "Value", value.release());
  cvSetProperty(object.get(), 0, "Unit", cvCreateString(unit));
  cvSetProperty(object.get(), 0, "Runtime", cvCreateLogicalScalar(runtime));
  return object;
}

bool isParameterObject(const cvArray_tag* array) {
  return cvIsA(array, parameter_class);
}

cvUniquePtr plainValue(const cvArray_tag* array) {
  if (isParameterObject(array)) {
    if (cvArray_tag* value = cvGetProperty(array, 0, "Value")) return cvUniquePtr(value);
  }
  return cvUniquePtr(cvCreateSharedCopy(array));
}

std::string unitOf(const cvArray_tag* parameter) {
  if (!isParameterObject(parameter)) return {};
  const cvUniquePtr unit(cvGetProperty(parameter, 0, "Unit"));
  return unit && cvIsChar(unit.get()) ? kmf::cvarray_to_string(unit.get()) : std::string();
}

bool isRuntime(const cvArray_tag* array) {
  if (!isParameterObject(array)) return false;
  const cvUniquePtr mark(cvGetProperty(array, 0, "Runtime"));
  return mark && cvIsLogical(mark.get()) && !cvIsEmpty(mark.get()) && cvGetScalar(mark.get()) != 0.0;
}

scripting_runtime::Workspace plainWorkspace(const scripting_runtime::Workspace& workspace) {
  scripting_runtime::Workspace plain(workspace);
  for (const std::string& name : workspace.names()) {
    const cvArray_tag* value = workspace.get(name);
    if (isParameterObject(value)) plain.set(name, plainValue(value));
  }
  return plain;
}

}  // namespace embedded::block_diagram
