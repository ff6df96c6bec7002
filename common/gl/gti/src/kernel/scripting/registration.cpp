// Makes the package and its methods known while the library is loaded, before anything can call them.

#include "common/gl/gti/src/kernel/scripting/gl_gt_package.hpp"
#include "common/gl/gti/src/kernel/scripting/graph_method.hpp"
#include "common/gl/gti/src/kernel/scripting/runtime_parameter_info_method.hpp"
#include "platform/class_system/gl_package.hpp"
#include "platform/class_system/package_info.hpp"

namespace gl::gti {

namespace {

template <class Method>
bool register_method() {
  using Package = kmf::ccos::PackageInfo<GlGtPackage>;
  Package::ensure(gl::cvi::gl_package());
  Package::add(boost::shared_ptr<ccos::COSMethodInfo>(new Method));
  return true;
}

[[maybe_unused]] const bool graph_method = register_method<GraphMethod>();
[[maybe_unused]] const bool runtime_parameter_info_method = register_method<RuntimeParameterInfoMethod>();

}  // namespace

}  // namespace gl::gti
