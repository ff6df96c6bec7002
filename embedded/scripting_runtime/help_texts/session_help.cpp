#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea session_help() {
  return {"Session",
          {
              {"help", "help\nhelp NAME", "Lists all functions, or tells about one, a class, a package or an area."},
              {"methods", "methods NAME\nc = methods(object)", "The methods of a class, or what is in a package."},
              {"who", "who\nwho NAME ...\nc = who",
               "The names of all variables, or of those that are named; * stands for any characters."},
              {"whos", "whos\nwhos NAME ...", "All variables, or those that are named, with their sizes and classes."},
              {"clear", "clear\nclear NAME ...", "Removes all variables, or those that are named."},
              {"exist", "n = exist(name)",
               "1 for a variable, 2 for a file, 5 for a function, 7 for a folder, 0 for nothing of these."},
              {"run", "run FILE\nrun(file)", "Runs a script in the workspace of the one that calls it."},
              {"exit", "exit\nexit(code)", "Ends the script and the program, with 0 where no code is given."},
              {"quit", "quit\nquit(code)", "Ends the script and the program, as exit."},
              {"clc", "clc", "Clears the screen."},
              {"format", "format long\nformat short\nformat",
               "Results are shown with 16 significant digits, or with 5 as in the beginning."},
              {"tic", "tic\nt = tic", "Starts the clock for toc."},
              {"toc", "toc\ns = toc\ns = toc(t)", "The seconds since tic."},
          }};
}

}  // namespace embedded::scripting_runtime
