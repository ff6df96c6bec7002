#pragma once

namespace gl::gti {

/// Names the package "gt", below the graph core's package "kinemo.gl".
struct GlGtPackage {
  static const char* name() { return "gt"; }
};

}  // namespace gl::gti
