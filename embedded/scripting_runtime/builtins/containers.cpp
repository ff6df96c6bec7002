// Cells and structures.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

void cell(Call& call) {
  std::vector<double> sizes;
  for (std::size_t i = 0; i < call.size(); ++i) {
    const Numbers numbers = numbers_of(call[i]);
    sizes.insert(sizes.end(), numbers.re.begin(), numbers.re.end());
  }
  if (sizes.empty()) sizes = {0};
  if (sizes.size() == 1) sizes.push_back(sizes.front());
  if (sizes.size() != 2) throw_runtime_error("InvalidSize", std::to_string(sizes.size()));
  const Shape shape = {dimension_from(sizes[0]), dimension_from(sizes[1])};
  checked_count(shape);
  call.give(cvUniquePtr(cvCreateCellMatrix(shape[0], shape[1])));
}

/// The cell array that gives the elements of a new structure array; null when all inputs are single values.
const cvArray_tag* spread(const Call& call) {
  const cvArray_tag* result = nullptr;
  for (std::size_t i = 1; i < call.size(); i += 2) {
    if (!cvIsCell(call[i]) || cvGetNumberOfElements(call[i]) == 1) continue;
    if (result != nullptr && cvGetDimensions(result) != cvGetDimensions(call[i])) {
      throw_runtime_error("SizeMismatch", "struct", shape_text(cvGetDimensions(result)),
                          shape_text(cvGetDimensions(call[i])));
    }
    result = call[i];
  }
  return result;
}

void structure(Call& call) {
  if (call.size() % 2 != 0) throw_runtime_error("NameWithoutValue", call.text(call.size() - 1));
  std::vector<std::string> fields;
  for (std::size_t i = 0; i < call.size(); i += 2) fields.push_back(call.text(i));
  const cvArray_tag* cells = spread(call);
  const Shape shape = cells != nullptr ? cvGetDimensions(cells) : Shape{1, 1};
  if (shape.size() > 2) throw_runtime_error("NotMatrix", shape_text(shape));
  cvUniquePtr result(cvCreateStructMatrix(shape[0], shape[1], fields));
  for (std::size_t k = 0; k < cvGetNumberOfElements(result.get()); ++k) {
    for (std::size_t i = 0; i < call.size(); i += 2) {
      const cvArray_tag* value = call[i + 1];
      if (cvIsCell(value)) value = cvGetCell(value, cvGetNumberOfElements(value) == 1 ? 0 : k);
      cvSetField(result.get(), k, fields[i / 2].c_str(), cvCreateSharedCopy(value));
    }
  }
  call.give(std::move(result));
}

void field_names(Call& call) {
  const bool object = cvGetClassID(call[0]) == cvOBJECT_CLASS;
  const std::vector<std::string> names = object ? cvGetPropertyNames(call[0]) : cvGetFieldNames(call[0]);
  call.give(text_column(names));
}

void is_field(Call& call) {
  const auto has = [&](const cvArray_tag* name) {
    return cvIsStruct(call[0]) && cvIsChar(name) &&
           cvGetFieldNumber(call[0], kmf::cvarray_to_string(name).c_str()) >= 0;
  };
  if (!cvIsCell(call[1])) return call.give(has(call[1]));
  Numbers result = Numbers::zeros(cvGetDimensions(call[1]), cvLOGICAL_CLASS);
  for (std::size_t i = 0; i < result.size(); ++i) result.re[i] = has(cvGetCell(call[1], i)) ? 1 : 0;
  call.give(array_of(std::move(result)));
}

void get_field(Call& call) {
  const std::string field = call.text(1);
  call.give(cvUniquePtr(cvCreateSharedCopy(kmf::cvarray_get_field(call[0], 0, field.c_str()))));
}

void set_field(Call& call) {
  cvUniquePtr result(cvCreateSharedCopy(call[0]));
  cvSetField(result.get(), 0, call.text(1).c_str(), cvCreateSharedCopy(call[2]));
  call.give(std::move(result));
}

/// Without one field, or without those that a cell array names.
void remove_fields(Call& call) {
  const std::vector<std::string> names = kmf::cvarray_to_string_vector(call[1]);
  for (const std::string& name : names) kmf::cvarray_get_field(call[0], 0, name.c_str());
  std::vector<std::string> kept;
  for (const std::string& field : cvGetFieldNames(call[0])) {
    if (std::find(names.begin(), names.end(), field) == names.end()) kept.push_back(field);
  }
  const std::size_t count = cvGetNumberOfElements(call[0]);
  cvUniquePtr result(cvCreateStructMatrix(1, count, kept));
  for (std::size_t i = 0; i < count; ++i) {
    for (const std::string& field : kept) {
      const cvArray_tag* value = cvGetField(call[0], i, field.c_str());
      cvSetField(result.get(), i, field.c_str(), cvCreateSharedCopy(value));
    }
  }
  cvSetDimensions(result.get(), cvGetDimensions(call[0]));
  call.give(std::move(result));
}

}  // namespace

std::vector<Builtin> container_builtins() {
  return {{"cell", 0, any_number, cell},   {"struct", 0, any_number, structure}, {"fieldnames", 1, 1, field_names},
          {"isfield", 2, 2, is_field},     {"getfield", 2, 2, get_field},        {"setfield", 3, 3, set_field},
          {"rmfield", 2, 2, remove_fields}};
}

}  // namespace embedded::scripting_runtime
