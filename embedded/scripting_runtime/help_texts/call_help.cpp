#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea call_help() {
  return {
      "Functions",
      {
          {"feval", "[y, ...] = feval(f, x, ...)", "Calls a function handle, or the function whose name a text gives."},
          {"arrayfun", "[y, ...] = arrayfun(f, x, ...)\nc = arrayfun(f, x, ..., 'UniformOutput', false)",
           "Calls a function for each element of arrays of one shape and gathers the results."},
          {"cellfun", "[y, ...] = cellfun(f, c, ...)\nc = cellfun(f, c, ..., 'UniformOutput', false)",
           "Calls a function for the contents of each cell and gathers the results."},
          {"func2str", "s = func2str(f)", "The text of a function handle."},
          {"str2func", "f = str2func(s)", "The function handle of a name or of the text of an anonymous function."},
          {"evalin", "x = evalin('base', text)\nx = evalin(scope, text)",
           "The value of an expression in the base workspace or in that of an object."},
          {"error", "error(text)\nerror(template, a, ...)\nerror(identifier, template, a, ...)",
           "Ends the statement and the script with a message."},
          {"assert", "assert(condition)\nassert(condition, template, a, ...)",
           "An error where the condition isn't true."},
      }};
}

}  // namespace embedded::scripting_runtime
