#include "common/gl/gti/export/gt_parameter_evaluator.hpp"

#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <boost/make_shared.hpp>

#include <string>
#include <vector>

namespace gl::gti {

namespace {

/// An array that outlives the scripting call in which it was made.
cvUniquePtr keep(cvArray_tag* array) {
  cvSetArrayScope(array, 0);
  return cvUniquePtr(array);
}

cvArray_tag* call(kmf::CvCleaner& cleaner, const char* function, std::vector<cvArray_tag*> inputs) {
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, static_cast<int>(inputs.size()), inputs.data(), function);
  return cleaner.addCvArray(output);
}

cvUniquePtr openDictionary(const std::string& name) {
  kmf::CvCleaner cleaner;
  cvArray_tag* inputs[] = {cleaner.createString(std::string("Gantrel.dd.open")), cleaner.createString(name)};
  cvArray_tag* output = nullptr;
  kmf::call_corvane(1, &output, 2, inputs, "feval", false);
  return keep(output);
}

}  // namespace

struct GtParameterEvaluator::Snapshot {
  explicit Snapshot(const ustring& modelName)
      : converter(unit_manager::get_cv_context()), modelHandle(gti::modelHandle(modelName)) {
    baseFunction = readWorkspace();
    const std::string dictionaryName = getParamString(modelHandle, "DataDictionary");
    if (!dictionaryName.empty()) dictionary = openDictionary(dictionaryName);
  }

  /// Takes the values of the model workspace, and returns the head of an anonymous function of its names.
  std::string readWorkspace() {
    kmf::CvCleaner cleaner;
    cvArray_tag* workspace = cleaner.addCvArray(getParam(modelHandle, "ModelWorkspace").release());
    const cvArray_tag* variables = call(cleaner, "data", {workspace});
    std::string names;
    for (std::size_t i = 0; i < cvGetNumberOfElements(variables); ++i) {
      if (i != 0) names += ',';
      names += kmf::cvarray_to_string(kmf::cvarray_get_field(variables, i, "Name"));
      workspaceValues.push_back(keep(cvCreateSharedCopy(kmf::cvarray_get_field(variables, i, "Value"))));
    }
    return "@(" + names + ")";
  }

  cvArray_tag* evaluate(kmf::CvCleaner& cleaner, const ustring& expression) const {
    if (dictionary) return call(cleaner, "evalin", {dictionary.get(), cleaner.createString(expression)});
    cvArray_tag* text = cleaner.createString(kmf::local_encoded_string_to_ustring(baseFunction) + expression);
    std::vector<cvArray_tag*> inputs{call(cleaner, "evalin", {cleaner.createString(std::string("base")), text})};
    for (const cvUniquePtr& value : workspaceValues) inputs.push_back(value.get());
    return call(cleaner, "feval", inputs);
  }

  data2::cvi::CvArrayValueConverter converter;
  std::vector<cvUniquePtr> workspaceValues;
  std::string baseFunction;
  cvUniquePtr dictionary;
  double modelHandle;
};

GtParameterEvaluator::GtParameterEvaluator(const ustring& modelName)
    : snapshot_(boost::make_shared<Snapshot>(modelName)) {}

GtParameterEvaluator::GtParameterEvaluator(const GtParameterEvaluator&) = default;

GtParameterEvaluator::GtParameterEvaluator(GtParameterEvaluator&&) noexcept = default;

GtParameterEvaluator::~GtParameterEvaluator() = default;

ParameterVariant GtParameterEvaluator::operator()(const ustring& expression) const {
  kmf::CvCleaner cleaner;
  const cvArray_tag* result = snapshot_->evaluate(cleaner, expression);
  if (cvIsChar(result)) return kmf::cvarray_to_ustring(result);
  if (cvIsA(result, "Gantrel.Parameter")) {
    if (cvArray_tag* value = cvGetProperty(result, 0, "Value")) result = cleaner.addCvArray(value);
  }
  const cvArray_tag* shared = cleaner.addCvArray(cvCreateSharedCopy(result));
  return snapshot_->converter(shared);
}

double GtParameterEvaluator::modelHandle() const {
  return snapshot_->modelHandle;
}

}  // namespace gl::gti
