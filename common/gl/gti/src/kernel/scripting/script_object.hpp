#pragma once

// Objects of script classes around C++ values.

#include "platform/class_system/class_system.hpp"

#include <memory>

namespace gl::gti {

/// A new object of the class around a copy of `value`, which it owns. The class's objects must stand for a T.
/// @throws what `ccos::COSClass::getClass` raises for a class that isn't loaded
template <class T>
ccos::COSInterfacePtr object_around(const char* class_name, const T& value) {
  ccos::COSClass* its_class = ccos::COSClass::getClass(ccos::COSNameID(class_name));
  const ccos::COSNameID& id = its_class->getNameID();
  ccos::COSInterfacePtr object;
  its_class->createInstance(object);
  its_class->construct(object);
  if (T* standing = static_cast<T*>(object->getNativePointer(id))) {  // a constructor may put a default one there
    object->setNativePointer(id, nullptr);
    delete standing;
  }
  std::unique_ptr<T> copy(new T(value));
  object->setNativePointer(id, copy.get());
  copy.release();
  return object;
}

/// An array of one object, owned by the caller.
cvArray_tag* array_around(const ccos::COSInterfacePtr& object);

}  // namespace gl::gti
