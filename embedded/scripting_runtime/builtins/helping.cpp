// help and methods.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/help.hpp"

namespace embedded::scripting_runtime {

namespace {

void help(Call& call) {
  const std::string text = call.size() == 0 ? help_overview() : help_text(call.text(0));
  if (call.wanted > 0) return call.give(text);
  display(text);
}

/// The methods of a class, or of the class of an object.
void methods(Call& call) {
  const std::string name = cvIsChar(call[0]) ? call.text(0) : cvGetClassName(call[0]);
  const std::vector<std::string> names = methods_of(name);
  if (call.wanted == 0) {
    for (const std::string& each : names) display(each);
    return;
  }
  cvUniquePtr result(cvCreateCellMatrix(names.size(), 1));
  for (std::size_t i = 0; i < names.size(); ++i) cvSetCell(result.get(), i, cvCreateString(names[i]));
  call.give(std::move(result));
}

}  // namespace

std::vector<Builtin> help_builtins() {
  return {{"help", 0, 1, help}, {"methods", 1, 1, methods}};
}

}  // namespace embedded::scripting_runtime
