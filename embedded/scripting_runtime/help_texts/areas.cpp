#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

std::vector<HelpArea> built_in_help() {
  return {session_help(), array_help(), mathematics_help(), reduction_help(), linear_algebra_help(),
          class_help(),   text_help(),  container_help(),   call_help(),      constant_help()};
}

}  // namespace embedded::scripting_runtime
