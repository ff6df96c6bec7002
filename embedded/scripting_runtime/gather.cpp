#include "embedded/scripting_runtime/gather.hpp"

#include "embedded/scripting_array/payloads.hpp"

namespace embedded::scripting_runtime {

cvUniquePtr gather(const cvArray_tag* array, const Shape& shape, const std::vector<std::size_t>& sources) {
  checked_count(shape);
  const cvClassID class_id = cvGetClassID(array);
  if (array->payload != nullptr) {
    return cvUniquePtr(
        kmf::embedded::make_array(class_id, array->payload->gathered(kmf::embedded::Shape(shape), sources)));
  }
  cvUniquePtr result(cvCreateNumericArray(shape, class_id));  // of one number, or of none
  for (std::size_t i = 0; i < sources.size(); ++i) cvSetElement(result.get(), i, cvGetElement(array, sources[i]));
  return result;
}

cvUniquePtr transposed(const cvArray_tag* array) {
  const Shape shape = cvGetDimensions(array);
  if (shape.size() > 2) throw_runtime_error("NotMatrix", shape_text(shape));
  if (shape[0] == 1 || shape[1] == 1) return reshaped(array, {shape[1], shape[0]});
  std::vector<std::size_t> sources;
  sources.reserve(shape[0] * shape[1]);
  for (std::size_t row = 0; row < shape[0]; ++row) {
    for (std::size_t column = 0; column < shape[1]; ++column) sources.push_back(column * shape[0] + row);
  }
  return gather(array, {shape[1], shape[0]}, sources);
}

cvUniquePtr reshaped(const cvArray_tag* array, const Shape& shape) {
  cvUniquePtr result(cvCreateSharedCopy(array));
  if (cvGetDimensions(array) != shape) cvSetDimensions(result.get(), shape);
  return result;
}

}  // namespace embedded::scripting_runtime
