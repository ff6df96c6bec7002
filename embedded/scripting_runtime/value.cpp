#include "embedded/scripting_runtime/value.hpp"

#include "embedded/scripting_runtime/errors.hpp"

namespace embedded::scripting_runtime {

namespace {

bool is_plain_number(const cvArray_tag* array) {
  return cvGetClassID(array) == cvDOUBLE_CLASS && cvGetNumberOfElements(array) == 1 && !cvIsComplex(array);
}

/// The property that holds the value of an object of the class; null for classes that count as no number.
const char* value_property(const cvArray_tag* array) {
  if (cvGetClassID(array) != cvOBJECT_CLASS) return nullptr;
  if (cvIsA(array, "Gantrel.Parameter")) return "Value";
  if (cvIsA(array, "kinemo.Value")) return "value";
  return nullptr;
}

}  // namespace

Value::Value(cvUniquePtr array) : is_number_(is_plain_number(array.get())), array_(std::move(array)) {
  if (!is_number_) return;
  number_ = cvGetScalar(array_.get());
  array_.reset();
}

Value Value::of(const cvArray_tag* array) {
  if (is_plain_number(array)) return Value(cvGetScalar(array));
  return Value(cvUniquePtr(cvCreateSharedCopy(array)));
}

cvArray_tag* Value::array() const {
  if (!array_) array_.reset(cvCreateDoubleScalar(number_));
  return array_.get();
}

cvUniquePtr Value::release() && {
  array();
  return std::move(array_);
}

bool is_value_object(const cvArray_tag* array) {
  return value_property(array) != nullptr;
}

cvUniquePtr plain_value(const cvArray_tag* array) {
  cvUniquePtr result(cvCreateSharedCopy(array));
  for (int level = 0; level < 8; ++level) {  // a parameter may hold a value with a unit, but no endless chain
    const char* property = value_property(result.get());
    if (property == nullptr) break;
    cvUniquePtr inner(cvGetProperty(result.get(), 0, property));
    if (!inner) throw_runtime_error("NoValueInObject", cvGetClassName(result.get()));
    result = std::move(inner);
  }
  return result;
}

}  // namespace embedded::scripting_runtime
