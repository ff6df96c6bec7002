#include "embedded/environment/vector_icons.hpp"

#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace embedded {

void show_vector_icons(bool show) {
  const cvUniquePtr flag(cvCreateLogicalScalar(show));
  cvArray_tag* input = flag.get();
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, 1, &input, "gl.gti.iconStyling");
  cvDestroyArray(output);
}

}  // namespace embedded
