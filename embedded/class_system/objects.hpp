#pragma once

// Objects with their native pointers, and how methods reach what is behind their inputs.

#include "embedded/class_system/classes.hpp"

#include <utility>
#include <vector>

namespace embedded::class_system {

class Object : public ccos::COSInterface {
 public:
  explicit Object(Class& its_class);
  ~Object() override;

  ccos::COSClass* getClass() const override { return class_; }
  void* getNativePointer(const ccos::COSNameID& className) const override;
  void setNativePointer(const ccos::COSNameID& className, void* native) override;

 private:
  struct Native {
    const Class* owner;
    void* pointer;
  };
  Class* class_;
  std::vector<Native> natives_;  ///< of few classes, mostly one
};

/// The native pointer of an object for its own class; null for none.
void* native_of(const ccos::COSInterfacePtr& object);
/// The native pointer of the one object that an array holds.
/// @throws "NotObjects" (class), "NotOneObject" (class, count), "EmptyObject" (class) for an empty place
void* single_native(const cvArray_tag* array);

/// What the one object of an array of the class stands for, which must be a T.
template <class T>
const T& single(const cvArray_tag* array) {
  return *static_cast<const T*>(single_native(array));
}

/// A new object of a known class around a copy of `value`, which must be what objects of the class stand for.
template <class T>
ccos::COSInterfacePtr object_around(const char* class_name, const T& value) {
  ccos::COSInterfacePtr object;
  find_class(class_name)->createInstance(object);
  auto copy = std::make_unique<T>(value);
  object->setNativePointer(class_name, copy.get());
  copy.release();
  return object;
}

/// One object as an array.
cvUniquePtr array_of(const ccos::COSInterfacePtr& object);

}  // namespace embedded::class_system
