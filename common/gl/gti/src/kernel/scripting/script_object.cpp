#include "common/gl/gti/src/kernel/scripting/script_object.hpp"

namespace gl::gti {

cvArray_tag* array_around(const ccos::COSInterfacePtr& object) {
  cvUniquePtr array(omCreateCCOSMatrix(1, 1, object->getClass()->getNameID()));
  omSetArrayElement(array.get(), 0, object);
  return array.release();
}

}  // namespace gl::gti
