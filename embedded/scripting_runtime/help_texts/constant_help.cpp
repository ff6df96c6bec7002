#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea constant_help() {
  return {
      "Constants",
      {
          {"pi", "pi\npi(n, m)", "The ratio of a circle's circumference to its diameter, or an array filled with it."},
          {"e", "e\ne(n, m)", "The base of natural logarithms, or an array filled with it."},
          {"i", "i", "The imaginary unit; 2i is a number of its own."},
          {"j", "j", "The imaginary unit, as i."},
          {"inf", "inf\ninf(n, m)", "Infinity, or an array filled with it."},
          {"Inf", "Inf\nInf(n, m)", "Infinity, as inf."},
          {"nan", "nan\nnan(n, m)",
           "What is not a number, or an array filled with it; it equals nothing, not even itself."},
          {"NaN", "NaN\nNaN(n, m)", "What is not a number, as nan."},
          {"eps", "eps\ny = eps(x)", "The distance from |x| to the next larger number; x is 1 where it isn't given."},
          {"true", "true\ntrue(n, m)", "The logical value true, or a logical array of it."},
          {"false", "false\nfalse(n, m)", "The logical value false, or a logical array of it."},
      }};
}

}  // namespace embedded::scripting_runtime
