#include "common/gl/gti/export/toplevel_runtime_parameters.hpp"

#include "common/gl/gti/export/parameter_value.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <string>

namespace gl::gti {

namespace {

cvArray_tag* call(kmf::CvCleaner& cleaner, const char* function, std::initializer_list<cvArray_tag*> arguments) {
  std::vector<cvArray_tag*> inputs(arguments);
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, static_cast<int>(inputs.size()), inputs.data(), function);
  return cleaner.addCvArray(output);
}

/// Whether a scripting runtime answers. One success holds for the rest of the process; a failure is tried anew.
bool scriptingAnswers() {
  static bool scriptingAvailable = false;
  if (scriptingAvailable) return true;
  try {
    kmf::CvCleaner cleaner;
    call(cleaner, "ones", {cleaner.createScalarDouble(1.0)});
    scriptingAvailable = true;
  } catch (...) {  // whatever a missing runtime throws: the model then has no run-time parameters
  }
  return scriptingAvailable;
}

/// `map` has one element for each name. A value that the graph core can't hold is left out.
void addValues(const cvArray_tag* map, gl::core::RuntimeParameterInfo& info) {
  const data2::cvi::CvArrayValueConverter convert(unit_manager::get_cv_context());
  for (std::size_t i = 0; i < cvGetNumberOfElements(map); ++i) {
    const kmf::VnId id(kmf::cvarray_to_string(kmf::cvarray_get_field(map, i, "Name")));
    const ParameterValue value(kmf::cvarray_get_field(map, i, "Value"), ustring());
    const cvUniquePtr shared(cvCreateSharedCopy(value.value()));
    if (convert.canConvert(shared.get())) info.addParameter(id, convert(shared.get()).data());
  }
}

}  // namespace

gl::core::RuntimeParameterInfo toplevel_runtime_parameters(const ustring& modelName) {
  gl::core::RuntimeParameterInfo info;
  if (!scriptingAnswers()) return info;

  kmf::CvCleaner cleaner;
  cvArray_tag* model = cleaner.createString(modelName);
  cvArray_tag* marked = call(cleaner, "gl.gti.runtimeParameters", {model});
  const cvArray_tag* resolved = call(cleaner, "gl.gti.resolveRuntimeParameters", {model, marked});

  const cvArray_tag* map = cvGetField(resolved, 0, "Map");
  if (map != nullptr && !cvIsEmpty(map)) addValues(map, info);
  if (const cvArray_tag* names = cvGetField(resolved, 0, "NonValue")) {
    for (const std::string& name : kmf::cvarray_to_string_vector(names)) info.addNonValueParameter(kmf::VnId(name));
  }
  return info;
}

}  // namespace gl::gti
