// Cells, structures and objects: arrays that own other arrays.

#include "embedded/scripting_array/errors.hpp"
#include "embedded/scripting_array/payloads.hpp"

using namespace kmf::embedded;

namespace {

void require(const cvArray_tag& array, cvClassID class_id, const char* message) {
  if (class_of(array) != class_id) throw_array_error(message, cvGetClassName(&array));
}

const StructPayload& structure(const cvArray_tag* array) {
  require(checked(array), cvSTRUCT_CLASS, "NotStruct");
  return payload_as<StructPayload>(*array);
}

const ObjectPayload& object(const cvArray_tag* array) {
  require(checked(array), cvOBJECT_CLASS, "NotObject");
  return payload_as<ObjectPayload>(*array);
}

// Owner of a value on its way into a container, so that it ends where the container refuses it.
cvUniquePtr take_over(const cvArray_tag* container, cvArray_tag* value) {
  if (value && value == container) throw_array_error("OwnElement", cvGetClassName(container));
  return cvUniquePtr(value);
}

}  // namespace

cvArray_tag* cvCreateCellMatrix(std::size_t rows, std::size_t columns) {
  return make_array(cvCELL_CLASS, new CellPayload(Shape::matrix(rows, columns)));
}

cvArray_tag* cvCreateStructMatrix(std::size_t rows, std::size_t columns, const std::vector<std::string>& fields) {
  auto payload = std::make_unique<StructPayload>(Shape::matrix(rows, columns));
  for (const std::string& field : fields) payload->fields.add(field);
  return make_array(cvSTRUCT_CLASS, payload.release());
}

cvArray_tag* cvCreateObject(const std::string& className) {
  return cvCreateNativeObject(className, nullptr);
}

cvArray_tag* cvCreateNativeObject(const std::string& className, std::shared_ptr<void> native) {
  return make_array(cvOBJECT_CLASS, new ObjectPayload(className, std::move(native)));
}

cvArray_tag* cvCreateFunctionHandle(const std::string& text, std::shared_ptr<void> callable) {
  return make_array(cvFUNCTION_CLASS, new FunctionPayload(text, std::move(callable)));
}

const cvArray_tag* cvGetCell(const cvArray_tag* array, std::size_t index) {
  require(checked(array), cvCELL_CLASS, "NotCell");
  const Places& places = payload_as<CellPayload>(*array).places;
  check_index(index, places.size());
  return places.get(index);
}

void cvSetCell(cvArray_tag* array, std::size_t index, cvArray_tag* value) {
  cvUniquePtr owned = take_over(array, value);
  require(checked(array), cvCELL_CLASS, "NotCell");
  check_index(index, count_of(*array));
  own_payload_as<CellPayload>(*array).places.set(index, owned.release());
}

std::vector<std::string> cvGetFieldNames(const cvArray_tag* array) {
  return structure(array).fields.names();
}

int cvGetFieldNumber(const cvArray_tag* array, const char* field) {
  return structure(array).fields.find(field ? field : "");
}

const cvArray_tag* cvGetFieldByNumber(const cvArray_tag* array, std::size_t index, int field) {
  const StructPayload& payload = structure(array);
  check_index(index, count_of(*array));
  if (field < 0 || static_cast<std::size_t>(field) >= payload.fields.size()) {
    throw_array_error("NoSuchFieldNumber", std::to_string(field + 1), std::to_string(payload.fields.size()));
  }
  return payload.fields.places(static_cast<std::size_t>(field)).get(index);
}

const cvArray_tag* cvGetField(const cvArray_tag* array, std::size_t index, const char* field) {
  const int number = cvGetFieldNumber(array, field);
  if (number >= 0) return cvGetFieldByNumber(array, index, number);
  check_index(index, count_of(*array));
  return nullptr;
}

void cvSetField(cvArray_tag* array, std::size_t index, const char* field, cvArray_tag* value) {
  cvUniquePtr owned = take_over(array, value);
  structure(array);
  check_index(index, count_of(*array));
  Fields& fields = own_payload_as<StructPayload>(*array).fields;
  const std::size_t number = fields.add(field ? field : "");
  fields.places(number).set(index, owned.release());
}

cvArray_tag* cvGetProperty(const cvArray_tag* array, std::size_t index, const char* name) {
  const Fields& properties = object(array).properties;
  check_index(index, 1);
  const int number = properties.find(name ? name : "");
  return number < 0 ? nullptr : cvCreateSharedCopy(properties.places(static_cast<std::size_t>(number)).get(0));
}

void cvSetProperty(cvArray_tag* array, std::size_t index, const char* name, cvArray_tag* value) {
  cvUniquePtr owned = take_over(array, value);
  object(array);
  check_index(index, 1);
  Fields& properties = own_payload_as<ObjectPayload>(*array).properties;
  const std::size_t number = properties.add(name ? name : "");
  properties.places(number).set(0, owned.release());
}

std::vector<std::string> cvGetPropertyNames(const cvArray_tag* array) {
  return object(array).properties.names();
}

std::shared_ptr<void> cvGetNative(const cvArray_tag* array) {
  if (class_of(checked(array)) == cvFUNCTION_CLASS) return payload_as<FunctionPayload>(*array).callable;
  return object(array).native;
}

std::string cvGetFunctionText(const cvArray_tag* array) {
  require(checked(array), cvFUNCTION_CLASS, "NotFunction");
  return payload_as<FunctionPayload>(*array).text;
}
