// Images.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/image_file.hpp"

namespace embedded::scripting_runtime {

namespace {

void imread(Call& call) {
  call.give(read_image(call.text(0)));
}

}  // namespace

std::vector<Builtin> image_builtins() {
  return {{"imread", 1, 1, imread}};
}

}  // namespace embedded::scripting_runtime
