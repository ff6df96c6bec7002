#include "embedded/class_system/objects.hpp"

#include "embedded/class_system/errors.hpp"

#include <algorithm>

namespace embedded::class_system {

namespace {

constinit std::size_t live_objects = 0;

}  // namespace

Object::Object(Class& its_class) : class_(&its_class) {
  ++live_objects;
}

Object::~Object() {
  for (const Native& native : natives_) {
    if (native.pointer && native.owner->definition().destroy) native.owner->definition().destroy(native.pointer);
  }
  --live_objects;
}

void* Object::getNativePointer(const ccos::COSNameID& className) const {
  for (const Native& native : natives_) {
    if (native.owner->getNameID() == className) return native.pointer;
  }
  return nullptr;
}

void Object::setNativePointer(const ccos::COSNameID& className, void* pointer) {
  const auto* owner = static_cast<const Class*>(ccos::COSClass::getClass(className));
  const auto known =
      std::find_if(natives_.begin(), natives_.end(), [&](const Native& native) { return native.owner == owner; });
  if (known != natives_.end()) {
    known->pointer = pointer;
  } else {
    natives_.push_back({owner, pointer});
  }
}

void* native_of(const ccos::COSInterfacePtr& object) {
  return object ? object->getNativePointer(object->getClass()->getNameID()) : nullptr;
}

void* single_native(const cvArray_tag* array) {
  const std::string name = cvGetClassName(array);
  if (!omIsCCOSArray(array)) throw_class_error("NotObjects", name);
  const std::size_t count = cvGetNumberOfElements(array);
  if (count != 1) throw_class_error("NotOneObject", name, std::to_string(count));
  void* native = native_of(omGetArrayElement(array, 0));
  if (!native) throw_class_error("EmptyObject", name);
  return native;
}

cvUniquePtr array_of(const ccos::COSInterfacePtr& object) {
  cvUniquePtr array(omCreateCCOSMatrix(1, 1, object->getClass()->getNameID()));
  omSetArrayElement(array.get(), 0, object);
  return array;
}

}  // namespace embedded::class_system

ccos::COSInterface::~COSInterface() = default;

std::size_t omLiveObjectCount() noexcept {
  return embedded::class_system::live_objects;
}
