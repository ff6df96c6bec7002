#pragma once

#include "platform/class_system/name_id.hpp"
#include "platform/class_system/object.hpp"
#include "platform/foundation/export.hpp"

namespace ccos {

/// A class of the scripting language. The class system owns it, and it stays.
class KINEMO_PLATFORM_API COSClass {
 public:
  /// Never null. Packages are asked to load the class where it isn't known yet.
  /// @throws "ClassNotLoaded" (class name)
  static COSClass* getClass(const COSNameID& className);

  /// Makes an object that isn't constructed, in place of what `object` refers to.
  virtual void createInstance(COSInterfacePtr& object) = 0;
  /// Runs the class's constructor without inputs, which may give the object a native pointer. What was behind that of
  /// an object that is constructed again is ended.
  virtual void construct(COSInterfacePtr& object) = 0;
  virtual const COSNameID& getNameID() const = 0;

 protected:
  COSClass() = default;
  COSClass(const COSClass&) = delete;
  COSClass& operator=(const COSClass&) = delete;
  virtual ~COSClass();
};

}  // namespace ccos
