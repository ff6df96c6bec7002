// What the command line says. A plain value, made once at the start of the program.
#pragma once

#include <string>
#include <variant>
#include <vector>

namespace kinemo::app {

enum class Command { compile, check, nets, blocks, explain, export_model, render, run, repl };
enum class When { automatic, always, never };

struct Options {
  Command command = Command::compile;
  std::string model;         ///< a file, "-" for standard input, or empty where the command needs none
  std::string input_format;  ///< "diagram", "spice", or empty: by the file's name and contents
  std::string format;
  std::vector<std::string> definitions;  ///< NAME=VALUE each: variables of the model workspace
  std::string runtime_parameters;        ///< of `compile`: "on", "off", or empty: as the model says
  std::string output;                    ///< a file; "-" or empty for standard output
  std::string block;                     ///< of `blocks` and `explain`
  std::string parameter;                 ///< of `explain`
  std::string system;                    ///< of `render`: path of a subsystem
  std::string net;                       ///< of `render`: a port, or the name of a line
  std::string picture;                   ///< of `check`: a file for the picture of what is found
  std::string script;                    ///< of `run`: a file, or "-" for standard input
  std::vector<std::string> models;       ///< of `run` and `repl`: opened first
  bool prompts = false;                  ///< of `repl`: show them also where input comes from a file
  bool list_rules = false;
  bool warnings_as_errors = false;

  std::vector<std::string> domains;  ///< modules to open besides the standard one
  bool timing = false;
  When progress = When::automatic;
  When color = When::automatic;
  bool quiet = false;
  bool verbose = false;
};

/// How the program ends where there is nothing to do: help, version, or a wrong command line.
struct Ending {
  int exit_code;
  std::string output;   ///< for standard output
  std::string message;  ///< for standard error
};

std::variant<Options, Ending> parse_command_line(int argc, const char* const* argv);

}  // namespace kinemo::app
