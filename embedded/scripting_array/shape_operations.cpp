// Questions about class and shape, and changes of shape.

#include "embedded/scripting_array/classes.hpp"
#include "embedded/scripting_array/errors.hpp"
#include "embedded/scripting_array/payloads.hpp"

using namespace kmf::embedded;

cvClassID cvGetClassID(const cvArray_tag* array) {
  return class_of(checked(array));
}

std::string cvGetClassName(const cvArray_tag* array) {
  const cvClassID class_id = class_of(checked(array));
  return class_id == cvOBJECT_CLASS ? payload_as<ObjectPayload>(*array).class_name : class_name(class_id);
}

bool cvIsA(const cvArray_tag* array, const char* className) {
  const cvClassID class_id = class_of(checked(array));
  const std::string name = className ? className : "";
  if (class_id == cvOBJECT_CLASS) return payload_as<ObjectPayload>(*array).class_name == name;
  if (name == "numeric") return is_number_class(class_id);
  if (name == "float") return class_id == cvDOUBLE_CLASS || class_id == cvSINGLE_CLASS;
  if (name == "integer") return is_integer_class(class_id);
  return name == class_name(class_id);
}

bool cvIsChar(const cvArray_tag* array) {
  return class_of(checked(array)) == cvCHAR_CLASS;
}
bool cvIsNumeric(const cvArray_tag* array) {
  return is_number_class(class_of(checked(array)));
}
bool cvIsLogical(const cvArray_tag* array) {
  return class_of(checked(array)) == cvLOGICAL_CLASS;
}
bool cvIsCell(const cvArray_tag* array) {
  return class_of(checked(array)) == cvCELL_CLASS;
}
bool cvIsStruct(const cvArray_tag* array) {
  return class_of(checked(array)) == cvSTRUCT_CLASS;
}
bool cvIsEmpty(const cvArray_tag* array) {
  return count_of(checked(array)) == 0;
}
std::size_t cvGetNumberOfElements(const cvArray_tag* array) {
  return count_of(checked(array));
}

const std::vector<std::size_t>& cvGetDimensions(const cvArray_tag* array) {
  return shape_of(checked(array)).dimensions();
}

void cvSetDimensions(cvArray_tag* array, const std::vector<std::size_t>& dimensions) {
  Shape shape(dimensions);
  if (shape.count() != count_of(checked(array))) {
    throw_array_error("OtherCount", dimensions_text(shape_of(*array).dimensions()), dimensions_text(dimensions));
  }
  if (shape == shape_of(*array)) return;
  if (!array->payload) array->payload = new NumericPayload(Shape(), false);  // 0 by 0 becomes another empty shape
  own_payload(*array).shape = std::move(shape);
}
