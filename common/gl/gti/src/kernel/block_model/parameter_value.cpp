#include "common/gl/gti/export/parameter_value.hpp"

#include <utility>

namespace gl::gti {

namespace {

cvUniquePtr emptyNumbers() {
  return cvUniquePtr(cvCreateDoubleMatrix(0, 0));
}

/// An owner's copy of `value`, with a parameter object unwrapped; one without a value is empty numbers.
cvUniquePtr takenValue(const cvArray_tag* value) {
  if (cvIsA(value, "Gantrel.Parameter")) {
    cvUniquePtr inner(cvGetProperty(value, 0, "Value"));
    return inner ? std::move(inner) : emptyNumbers();
  }
  return cvUniquePtr(cvDuplicateArray(value));
}

/// Takes the array out of the runtime's clean-up after each call, and shares it. A failure on the way ends the array.
boost::shared_ptr<cvArray_tag> keep(cvUniquePtr array) {
  cvSetArrayScope(array.get(), 0);
  return boost::shared_ptr<cvArray_tag>(array.release(), cvArrayDeleter());
}

}  // namespace

ParameterValue::ParameterValue() : value_(keep(emptyNumbers())) {}

ParameterValue::ParameterValue(const cvArray_tag* value, const ustring& expression)
    : value_(keep(takenValue(value))), expression_(expression) {}

bool ParameterValue::operator==(const ParameterValue& other) const {
  return expression_ == other.expression_ && cvAreMatricesEqual(value(), other.value());
}

}  // namespace gl::gti
