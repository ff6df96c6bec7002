// Arrays of class 18 whose elements are objects of the class system.

#include "embedded/class_system/errors.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/scripting_array/payloads.hpp"

#include <algorithm>

namespace embedded::class_system {

namespace {

using kmf::embedded::Shape;

class ObjectsPayload : public kmf::embedded::ObjectPayload {
 public:
  ObjectsPayload(Shape its_shape, const std::string& name) : ObjectPayload(name, nullptr) {
    shape = std::move(its_shape);
    objects.resize(shape.count());
  }

  Payload* clone() const override { return new ObjectsPayload(*this); }
  Payload* gathered(Shape new_shape, const std::vector<std::size_t>& sources) const override {
    auto result = std::make_unique<ObjectsPayload>(std::move(new_shape), class_name);
    for (std::size_t i = 0; i < sources.size(); ++i) result->objects[i] = objects[sources[i]];
    return result.release();
  }
  bool same_natives(const ObjectPayload& other) const override;
  ObjectPayload* of_shape(Shape new_shape) const override;
  void put(std::size_t place, const ObjectPayload& source, std::size_t index) override {
    objects[place] = dynamic_cast<const ObjectsPayload&>(source).objects[index];
  }

  std::vector<ccos::COSInterfacePtr> objects;
};

bool same(const ccos::COSInterfacePtr& a, const ccos::COSInterfacePtr& b) {
  if (a == b) return true;
  if (!a || !b || a->getClass() != b->getClass()) return false;
  const auto& equal = static_cast<const Class*>(a->getClass())->definition().equal;
  const void* first = native_of(a);
  const void* second = native_of(b);
  return equal && first && second && equal(first, second);
}

bool ObjectsPayload::same_natives(const ObjectPayload& other) const {
  const auto* objects_of_other = dynamic_cast<const ObjectsPayload*>(&other);
  if (!objects_of_other) return false;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    if (!same(objects[i], objects_of_other->objects[i])) return false;
  }
  return true;
}

/// All places share one new object: objects don't change.
kmf::embedded::ObjectPayload* ObjectsPayload::of_shape(Shape new_shape) const {
  auto result = std::make_unique<ObjectsPayload>(std::move(new_shape), class_name);
  if (result->objects.empty()) return result.release();
  ccos::COSClass* its_class = ccos::COSClass::getClass(ccos::COSNameID(class_name));
  ccos::COSInterfacePtr object;
  its_class->createInstance(object);
  its_class->construct(object);
  std::fill(result->objects.begin(), result->objects.end(), object);
  return result.release();
}

const ObjectsPayload* payload_of(const cvArray_tag* array) {
  if (cvGetClassID(array) != cvOBJECT_CLASS) return nullptr;
  return dynamic_cast<const ObjectsPayload*>(array->payload);
}

/// @throws "NotObjects" (class), "NoSuchElement" (index from 1, count)
const ObjectsPayload& payload_with(const cvArray_tag* array, std::size_t index) {
  const ObjectsPayload* payload = payload_of(array);
  if (!payload) throw_class_error("NotObjects", cvGetClassName(array));
  if (index >= payload->objects.size()) {
    throw_class_error("NoSuchElement", std::to_string(index + 1), std::to_string(payload->objects.size()));
  }
  return *payload;
}

}  // namespace

}  // namespace embedded::class_system

using namespace embedded::class_system;

cvArray_tag* omCreateCCOSMatrix(std::size_t rows, std::size_t columns, const ccos::COSNameID& className) {
  const char* name = ccos::COSClass::getClass(className)->getNameID().text();
  return kmf::embedded::make_array(cvOBJECT_CLASS, new ObjectsPayload(Shape::matrix(rows, columns), name));
}

void omSetArrayElement(cvArray_tag* array, std::size_t index, const ccos::COSInterfacePtr& object) {
  const ObjectsPayload& payload = payload_with(array, index);
  if (object && payload.class_name != object->getClass()->getNameID().text()) {
    throw_class_error("WrongClass", std::string(object->getClass()->getNameID().text()), payload.class_name);
  }
  kmf::embedded::own_payload_as<ObjectsPayload>(*array).objects[index] = object;
}

ccos::COSInterfacePtr omGetArrayElement(const cvArray_tag* array, std::size_t index) {
  return payload_with(array, index).objects[index];
}

bool omIsCCOSArray(const cvArray_tag* array) {
  return payload_of(array) != nullptr;
}
