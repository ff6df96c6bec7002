#include "embedded/scripting_runtime/object_arrays.hpp"

#include "embedded/scripting_array/payloads.hpp"

#include <memory>

namespace embedded::scripting_runtime {

namespace {

using kmf::embedded::ObjectPayload;

const ObjectPayload& payload_of(const cvArray_tag* array) {
  return static_cast<const ObjectPayload&>(*array->payload);
}

}  // namespace

bool holds_objects(const cvArray_tag* array) {
  if (cvGetClassID(array) != cvOBJECT_CLASS) return false;
  return std::unique_ptr<ObjectPayload>(payload_of(array).of_shape(kmf::embedded::Shape::matrix(0, 0))) != nullptr;
}

bool hold_same_objects(const cvArray_tag* a, const cvArray_tag* b) {
  return holds_objects(a) && holds_objects(b) && payload_of(a).class_name == payload_of(b).class_name;
}

cvUniquePtr new_objects(const cvArray_tag* like, const Shape& shape) {
  checked_count(shape);
  return cvUniquePtr(kmf::embedded::make_array(cvOBJECT_CLASS, payload_of(like).of_shape(kmf::embedded::Shape(shape))));
}

void put_object(cvArray_tag* target, std::size_t place, const cvArray_tag* source, std::size_t index) {
  kmf::embedded::own_payload_as<ObjectPayload>(*target).put(place, payload_of(source), index);
}

}  // namespace embedded::scripting_runtime
