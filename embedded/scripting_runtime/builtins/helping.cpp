// help and methods.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "embedded/scripting_runtime/help_pages.hpp"
#include "embedded/scripting_runtime/script.hpp"

namespace embedded::scripting_runtime {

namespace {

/// A topic; of a variable that holds objects, their class.
std::string topic_in(const Call& call) {
  std::string name = call.text(0);
  const cvArray_tag* variable = running_workspace().get(name);
  const bool object = variable != nullptr && cvGetClassID(variable) == cvOBJECT_CLASS;
  return object && find_help(name) == nullptr ? cvGetClassName(variable) : name;
}

void help(Call& call) {
  const std::string text = call.size() == 0 ? help_overview() : help_text(topic_in(call));
  if (call.wanted > 0) return call.give(text);
  display(text);
}

/// The methods of a class, of an object's class, or of a package.
void methods(Call& call) {
  const std::string name = cvIsChar(call[0]) ? topic_in(call) : cvGetClassName(call[0]);
  const std::vector<std::string> names = methods_in(name);
  if (call.wanted == 0) {
    for (const std::string& each : names) display(each);
    return;
  }
  call.give(text_column(names));
}

}  // namespace

std::vector<Builtin> help_builtins() {
  return {{"help", 0, 1, help}, {"methods", 1, 1, methods}};
}

}  // namespace embedded::scripting_runtime
