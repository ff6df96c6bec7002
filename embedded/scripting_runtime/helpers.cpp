// The helpers that move values between C++ and arrays.

#include "embedded/scripting_runtime/errors.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scalars.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace kmf {

namespace {

using embedded::scripting_runtime::throw_runtime_error;

/// Calls `add(text array)` for each text of a cell array, or for the one text.
template <class Add>
void for_each_text(const cvArray_tag* array, Add add) {
  if (!cvIsCell(array)) return add(array);
  const std::size_t count = cvGetNumberOfElements(array);
  for (std::size_t i = 0; i < count; ++i) add(cvGetCell(array, i));
}

}  // namespace

std::string cvarray_to_string(const cvArray_tag* array) {
  return ustring_to_utf8_string(cvarray_to_ustring(array));
}

ustring cvarray_to_ustring(const cvArray_tag* array) {
  const ustring& characters = cvGetCharacters(array);
  const std::vector<std::size_t>& shape = cvGetDimensions(array);
  if (characters.size() > 1 && shape[1] != characters.size()) {
    throw_runtime_error("NotOneRow", embedded::scripting_runtime::shape_text(shape));
  }
  return characters;
}

std::vector<std::string> cvarray_to_string_vector(const cvArray_tag* array) {
  std::vector<std::string> result;
  for_each_text(array, [&](const cvArray_tag* text) { result.push_back(cvarray_to_string(text)); });
  return result;
}

std::vector<ustring> cvarray_to_ustring_vector(const cvArray_tag* array) {
  std::vector<ustring> result;
  for_each_text(array, [&](const cvArray_tag* text) { result.push_back(cvarray_to_ustring(text)); });
  return result;
}

cvArray_tag* string_vector_to_cvarray(const std::vector<ustring>& texts, int dimension) {
  const auto [rows, columns] = compute_matrix_dimension(texts.size(), dimension);
  cvUniquePtr result(cvCreateCellMatrix(rows, columns));
  for (std::size_t i = 0; i < texts.size(); ++i) cvSetCell(result.get(), i, cvCreateUString(texts[i]));
  return result.release();
}

const cvArray_tag* cvarray_get_field(const cvArray_tag* array, std::size_t index, const char* field) {
  if (const cvArray_tag* value = cvGetField(array, index, field)) return value;
  throw_message("kinemo:scripting:array", "NoSuchField", std::string(field));
}

std::pair<std::size_t, std::size_t> compute_matrix_dimension(std::size_t count, int dimension) {
  return dimension == 1 ? std::pair(count, std::size_t{1}) : std::pair(std::size_t{1}, count);
}

double cvarray_to_double_scalar(const cvArray_tag* array) {
  const std::size_t count = cvGetNumberOfElements(array);
  if (cvGetClassID(array) == cvDOUBLE_CLASS && !cvIsComplex(array) && count == 1) return cvGetScalar(array);
  throw_runtime_error("NotDoubleScalar", cvGetClassName(array), std::to_string(count));
}

bool cvarray_to_logical_scalar(const cvArray_tag* array) {
  const std::size_t count = cvGetNumberOfElements(array);
  if (cvIsLogical(array) && count == 1) return cvGetScalar(array) != 0;
  throw_runtime_error("NotLogicalScalar", cvGetClassName(array), std::to_string(count));
}

void check_num_inputs(int minimum, int maximum, int count) {
  if (count < minimum) throw_runtime_error("TooFewInputs", std::to_string(count), std::to_string(minimum));
  if (count > maximum) throw_runtime_error("TooManyInputs", std::to_string(count), std::to_string(maximum));
}

}  // namespace kmf
