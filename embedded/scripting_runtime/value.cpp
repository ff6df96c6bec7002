#include "embedded/scripting_runtime/value.hpp"

#include "embedded/scripting_runtime/errors.hpp"

namespace embedded::scripting_runtime {

namespace {

bool is_plain_number(const cvArray_tag* array) {
  return cvGetClassID(array) == cvDOUBLE_CLASS && cvGetNumberOfElements(array) == 1 && !cvIsComplex(array);
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

Value single(std::vector<Value> values) {
  if (values.empty()) throw_runtime_error("NoValue");
  return std::move(values.front());
}

std::vector<Value> one(Value value) {
  std::vector<Value> result;
  result.push_back(std::move(value));
  return result;
}

bool is_value_object(const cvArray_tag* array) {
  return cvGetClassID(array) == cvOBJECT_CLASS && (cvIsA(array, "kinemo.Value") || is_parameter_object(array));
}

bool is_parameter_object(const cvArray_tag* array) {
  return cvGetClassID(array) == cvOBJECT_CLASS && cvIsA(array, "Gantrel.Parameter");
}

cvUniquePtr parameter_contents(const cvArray_tag* array) {
  if (is_parameter_object(array)) {
    if (cvArray_tag* value = cvGetProperty(array, 0, "Value")) return cvUniquePtr(value);
  }
  return cvUniquePtr(cvCreateSharedCopy(array));
}

}  // namespace embedded::scripting_runtime
