// Any text: it runs as a script or is refused with a place in it, its values can be shown, and no array is left alive.

#include "embedded/scripting_runtime/completion.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/script.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace embedded;

void set_up() {
  scripting_runtime::limits().array_bytes = std::size_t{1} << 18;
  scripting_runtime::limits().steps = 2000;
  scripting_runtime::set_display_sink([](const std::string&) {});
  scripting_runtime::set_error_sink([](const std::string&) {});
}

void run(std::string_view text, scripting_runtime::Workspace& workspace) {
  try {
    scripting_runtime::run_script("m = [1 2;3 4]; c = {1,'two',{3}}; s = struct('f',{1,2}); v = kinemo.Value(1,'V');",
                                  "", workspace);
    scripting_runtime::run_script(text, "fuzz", workspace);
  } catch (const kmf::Exception& error) {
    const scripting_runtime::Problem problem = scripting_runtime::problem_of(error);
    const bool placed = problem.line > 0 && problem.column > 0 && !problem.text.empty();
    if (!placed && text.size() < (std::size_t{1} << 30)) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = (set_up(), true);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::size_t before = cvLiveArrayCount();
  {
    scripting_runtime::Workspace workspace;
    run(text, workspace);
    if (ready) scripting_runtime::complete(text, workspace);
  }
  if (cvLiveArrayCount() != before) std::abort();
  return 0;
}
