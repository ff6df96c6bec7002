#include "common/gl/gti/export/parameter_value.hpp"

namespace gl::gti {

namespace {

/// An owner's copy of `value`, with a parameter object unwrapped.
cvUniquePtr takenValue(const cvArray_tag* value) {
  if (cvIsA(value, "Gantrel.Parameter")) {
    if (cvUniquePtr inner{cvGetProperty(value, 0, "Value")}) return inner;
  }
  return cvUniquePtr(cvDuplicateArray(value));
}

/// Takes the array out of the runtime's clean-up after each call, and shares it. A failure on the way ends the array.
boost::shared_ptr<cvArray_tag> keep(cvUniquePtr array) {
  cvSetArrayScope(array.get(), 0);
  return boost::shared_ptr<cvArray_tag>(array.release(), cvArrayDeleter());
}

}  // namespace

ParameterValue::ParameterValue() : value_(keep(cvUniquePtr(cvCreateDoubleMatrix(0, 0)))) {}

ParameterValue::ParameterValue(const cvArray_tag* value, const ustring& expression)
    : value_(keep(takenValue(value))), expression_(expression) {}

bool ParameterValue::operator==(const ParameterValue& other) const {
  return expression_ == other.expression_ && cvAreMatricesEqual(value(), other.value());
}

}  // namespace gl::gti
