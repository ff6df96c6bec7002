#pragma once

#include "platform/class_system/package.hpp"

namespace gl::cvi {

/// The package "kinemo.gl", where the graph core's scripting layer has its classes; made on first use. A package of
/// another library that stands on the graph core goes below it.
KINEMO_PLATFORM_API ccos::COSPackage* gl_package();

}  // namespace gl::cvi
