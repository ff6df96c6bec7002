#pragma once

// Objects, and scripting arrays that hold them.

#include "platform/class_system/name_id.hpp"
#include "platform/foundation/export.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <memory>

namespace ccos {

class COSClass;

/// One object, reached through a `COSInterfacePtr`.
class KINEMO_PLATFORM_API COSInterface {
 public:
  COSInterface(const COSInterface&) = delete;
  COSInterface& operator=(const COSInterface&) = delete;
  virtual ~COSInterface();

  virtual COSClass* getClass() const = 0;
  /// The native pointer kept for a class name; null where there is none. The object goes on owning what is behind it.
  virtual void* getNativePointer(const COSNameID& className) const = 0;
  /// From here on the object owns what is behind `native`: it was made with `new`, and the class of that name ends it
  /// with the object. What was behind the pointer before is no longer the object's: who replaces it has ended it.
  /// @throws "ClassNotLoaded" (class name), and then `native` is not taken over
  virtual void setNativePointer(const COSNameID& className, void* native) = 0;

 protected:
  COSInterface() = default;
};

/// Counts references; the last one ends the object.
using COSInterfacePtr = std::shared_ptr<COSInterface>;

}  // namespace ccos

/// An array of class 18 with room for objects of a class; the places are empty at first. The caller owns it.
/// @throws "ClassNotLoaded" (class name)
KINEMO_PLATFORM_API cvArray_tag* omCreateCCOSMatrix(std::size_t rows, std::size_t columns,
                                                    const ccos::COSNameID& className);
/// Copies of the array that are alive keep what they held.
/// @throws "NotObjects" (class of the array), "NoSuchElement" (index from 1, count), "WrongClass" (class of the object,
/// class of the array)
KINEMO_PLATFORM_API void omSetArrayElement(cvArray_tag* array, std::size_t index, const ccos::COSInterfacePtr& object);
/// Null for an empty place. @throws as `omSetArrayElement`
KINEMO_PLATFORM_API ccos::COSInterfacePtr omGetArrayElement(const cvArray_tag* array, std::size_t index);
/// Whether the array holds objects of the class system. Other arrays of class 18 have properties instead.
KINEMO_PLATFORM_API bool omIsCCOSArray(const cvArray_tag* array);
/// Objects that are alive.
KINEMO_PLATFORM_API std::size_t omLiveObjectCount() noexcept;
