#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

namespace {

constexpr const char* statement_form =
    "Uniform results are one number of the same class from each call; with 'UniformOutput' false anything may come.\n"
    "As a statement of its own it asks for no results: the function may be one that only acts, such as set_param.";

}  // namespace

HelpArea call_help() {
  return {
      "Functions",
      {
          {"feval", "[y, ...] = feval(f, x, ...)", "Calls a function handle, or the function whose name a text gives."},
          {"arrayfun",
           "[y, ...] = arrayfun(f, x, ...)\nc = arrayfun(f, x, ..., 'UniformOutput', false)\narrayfun(f, x, ...)",
           "Calls a function for each element of arrays of one shape and gathers the results.", statement_form},
          {"cellfun",
           "[y, ...] = cellfun(f, c, ...)\nc = cellfun(f, c, ..., 'UniformOutput', false)\ncellfun(f, c, ...)",
           "Calls a function for the contents of each cell and gathers the results.", statement_form},
          {"iff", "[y, ...] = iff(condition, f)\n[y, ...] = iff(condition, f, g)\niff(condition, f, g)",
           "Calls the function f without inputs where the condition is true, otherwise g where it is given.",
           "Only what is chosen is computed: y = iff(n > 0, @() x / n, @() 0). ternary_fcn computes both of its "
           "values."},
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
