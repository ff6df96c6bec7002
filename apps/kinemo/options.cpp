#include "apps/kinemo/options.hpp"

#include "apps/kinemo/definitions.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/pictures.hpp"
#include "formats/names.hpp"

#include <CLI/CLI.hpp>

#include <map>
#include <sstream>

namespace kinemo::app {

namespace {

const std::vector<std::string> command_names{"compile", "check",  "nets", "blocks", "explain",
                                             "export",  "render", "run",  "repl"};

constexpr const char* main_footer = R"(
Models are diagrams (.yaml, .yml, .json) and SPICE netlists (.cir, .sp, .spice, .net, .ckt, .cdl); '-' is standard input.
Data goes to standard output, messages and progress to standard error.
Exit status: 0 clean, 1 the model has errors, 2 wrong usage or a file that can't be read or written, 70 a fault of ours.

Examples:
  kinemo compile examples/rc_lowpass.yaml
  kinemo check --format sarif motor_drive.yaml > findings.sarif
  kinemo nets amplifier.cir --format json
  kinemo render amplifier.cir -o amplifier.pdf
  kinemo export rc_lowpass.yaml --to spice -o rc_lowpass.cir
  kinemo blocks physical/resistor
  kinemo repl examples/rc_lowpass.yaml)";

const std::map<std::string, When> when_names{
    {"auto", When::automatic}, {"always", When::always}, {"never", When::never}};

void add_common_options(CLI::App& app, Options& options) {
  const auto group = [](CLI::Option* option) { return option->group("Common options"); };
  group(app.add_option("--domain", options.domains, "Open a further domain module; may be given more than once"))
      ->type_name("FILE.so")
      ->expected(1)
      ->take_all();
  group(app.add_flag("--timing", options.timing, "Tell how long each stage took"));
  group(app.add_option("--progress", options.progress, "Show progress: auto (on a terminal), always or never"))
      ->transform(CLI::CheckedTransformer(when_names).description(""))
      ->type_name("auto|always|never");
  group(app.add_option("--color", options.color, "Colour messages: auto (on a terminal), always or never"))
      ->transform(CLI::CheckedTransformer(when_names).description(""))
      ->type_name("auto|always|never");
  CLI::Option* quiet = app.add_flag("-q,--quiet", options.quiet, "Say nothing but errors");
  CLI::Option* verbose = app.add_flag("-v,--verbose", options.verbose, "Say what is being done");
  group(quiet);
  group(verbose)->excludes(quiet);
}

void add_model(CLI::App& app, Options& options, bool required) {
  CLI::Option* model = app.add_option("MODEL", options.model, "A diagram or a netlist; '-' is standard input");
  if (required) model->required();
  app.add_option("--input-format", options.input_format, "What MODEL is, where its name doesn't tell")
      ->check(CLI::IsMember({"diagram", "spice"}).description(""))
      ->type_name("diagram|spice");
  app.add_option("-D", options.definitions,
                 "Set a variable of the model workspace before the compile; VALUE is an expression. May be given more "
                 "than once")
      ->type_name("NAME=VALUE")
      ->expected(1)
      ->take_all();
}

void add_format(CLI::App& app, Options& options, const std::vector<std::string>& names, const std::string& text) {
  std::string type_name;
  for (const std::string& name : names) type_name += (type_name.empty() ? "" : "|") + name;
  app.add_option("--format", options.format, text + "; " + names.front() + " by default")
      ->check(CLI::IsMember(names).description(""))
      ->type_name(type_name);
}

void add_output(CLI::App& app, Options& options) {
  app.add_option("-o,--output", options.output, "Write to a file, which appears only when all went well")
      ->type_name("FILE");
}

/// Empty, or why no picture can have that name.
std::string picture_fault(const std::string& file) {
  return views::picture::picture_format(file)
             ? std::string()
             : "'" + file + "' tells no kind of picture; valid endings are .svg, .png and .pdf";
}

CLI::App* add_command(CLI::App& app, Options& options, Command command, const std::string& name,
                      const std::string& text, const std::string& footer) {
  CLI::App* sub = app.add_subcommand(name, text);
  sub->footer(footer);
  sub->callback([&options, command] { options.command = command; });
  return sub;
}

void add_compile(CLI::App& app, Options& options) {
  CLI::App* compile = add_command(app, options, Command::compile, "compile", "Compile a model into its graph",
                                  "\nExample:\n  kinemo compile rc_lowpass.yaml --format json -o rc_lowpass.json");
  add_model(*compile, options, true);
  add_format(*compile, options, {"summary", "json", "dot", "graphml"}, "How to show the compiled model");
  compile
      ->add_option(
          "--runtime-parameters", options.runtime_parameters,
          "Keep what depends on run-time parameters as expressions; off by default, unless the model's setting "
          "PropagateRuntimeParameters is on")
      ->check(CLI::IsMember({"on", "off"}).description(""))
      ->type_name("on|off");
  add_output(*compile, options);
  add_common_options(*compile, options);
}

void add_check(CLI::App& app, Options& options) {
  CLI::App* check = add_command(app, options, Command::check, "check", "Look for mistakes in a model",
                                "\nExamples:\n  kinemo check rc_lowpass.yaml --warnings-as-errors\n"
                                "  kinemo check --list-rules");
  add_model(*check, options, false);
  add_format(*check, options, {"text", "json", "sarif"}, "How to show what is found");
  check
      ->add_option(
          "--picture", options.picture,
          "Draw the systems where something is found, with blocks, ports and nets outlined; only PDF takes more "
          "than the topmost of them")
      ->type_name("FILE.svg|png|pdf")
      ->check(CLI::Validator(picture_fault, ""));
  check->add_flag("--list-rules", options.list_rules, "Say which rules there are");
  check->add_flag("--warnings-as-errors", options.warnings_as_errors, "Exit with 1 for a warning, too");
  add_output(*check, options);
  add_common_options(*check, options);
}

void add_nets(CLI::App& app, Options& options) {
  CLI::App* nets = add_command(app, options, Command::nets, "nets", "List which ports share a node, through all levels",
                               "\nExample:\n  kinemo nets amplifier.cir --format json");
  add_model(*nets, options, true);
  add_format(*nets, options, {"text", "json"}, "How to show the nets");
  add_output(*nets, options);
  add_common_options(*nets, options);
}

void add_blocks(CLI::App& app, Options& options) {
  CLI::App* blocks =
      add_command(app, options, Command::blocks, "blocks", "Show the library: ports, parameters, units, defaults",
                  "\nExamples:\n  kinemo blocks\n  kinemo blocks physical/spice\n"
                  "  kinemo blocks physical/resistor --format json");
  blocks->add_option("NAME", options.block, "A block, or the first part of the names of some");
  add_format(*blocks, options, {"text", "json"}, "How to show the blocks");
  add_output(*blocks, options);
  add_common_options(*blocks, options);
}

void add_explain(CLI::App& app, Options& options) {
  CLI::App* explain =
      add_command(app, options, Command::explain, "explain",
                  "Tell where the value of a parameter comes from, and whether it stays tunable at run time",
                  "\nExamples:\n  kinemo explain rc_lowpass.yaml Filter/R1 R\n"
                  "  kinemo explain amplifier.cir x1/r1 value --format json");
  add_model(*explain, options, true);
  explain->add_option("BLOCK", options.block, "Path of a block, such as Filter/R1")->required();
  explain->add_option("PARAMETER", options.parameter, "A parameter of the block's dialog or mask")->required();
  explain->preparse_callback([&options](std::size_t) { options.runtime_parameters = "on"; });
  add_format(*explain, options, {"text", "json"}, "How to show the answer");
  add_output(*explain, options);
  add_common_options(*explain, options);
}

void add_export(CLI::App& app, Options& options) {
  CLI::App* command = add_command(app, options, Command::export_model, "export",
                                  "Write a model in another language: as a diagram, or electrical parts as a netlist",
                                  "\nExamples:\n  kinemo export examples/rc_lowpass.yaml --to spice -o rc_lowpass.cir\n"
                                  "  kinemo export amplifier.cir --to diagram -o amplifier.yaml");
  add_model(*command, options, true);
  command->add_option("--to", options.format, "The language to write in")
      ->required()
      ->check(CLI::IsMember({"spice", "diagram"}).description(""))
      ->type_name("spice|diagram");
  command
      ->add_option("--runtime-parameters", options.runtime_parameters,
                   "Of netlists: write run-time parameters as .param, and what depends on them as expressions; on by "
                   "default")
      ->check(CLI::IsMember({"on", "off"}).description(""))
      ->type_name("on|off");
  add_output(*command, options);
  add_common_options(*command, options);
}

void add_render(CLI::App& app, Options& options) {
  CLI::App* command = add_command(
      app, options, Command::render, "render",
      "Draw a model: blocks with their icons, and the lines between them. What the model gives no positions "
      "for is laid out",
      "\nExamples:\n  kinemo render rc_lowpass.yaml -o rc_lowpass.svg\n"
      "  kinemo render rc_lowpass.yaml --system Filter --net Filter/R1.p -o filter.png\n"
      "  kinemo render amplifier.cir -o amplifier.pdf     all systems, one on each page");
  add_model(*command, options, true);
  command->add_option("--system", options.system,
                      "Path of the subsystem to draw; by default the top of the model, and for PDF all systems");
  command
      ->add_option("--net", options.net,
                   "Highlight a net through all levels: a port such as Filter/R1.p, a block with one port, or the name "
                   "of a line")
      ->check(
          CLI::Validator([](const std::string& net) { return std::string(net.empty() ? "it names no net" : ""); }, ""));
  add_format(*command, options, {"svg", "png", "pdf"}, "The kind of picture, where the name of the file doesn't tell");
  add_output(*command, options);
  add_common_options(*command, options);
}

void add_models(CLI::App& app, Options& options) {
  app.add_option("MODEL", options.models, "Diagrams and netlists to open first");
}

void add_run(CLI::App& app, Options& options) {
  CLI::App* run =
      add_command(app, options, Command::run, "run", "Run a script",
                  "\nExit status: 0 clean, 1 the script or a model has an error, 2 wrong usage or a file "
                  "that can't be read;\nexit(n) in the script ends with n.\n"
                  "\nExamples:\n  kinemo run sweep.kin rc_lowpass.yaml\n  echo 'disp(1 + 1)' | kinemo run -");
  run->add_option("SCRIPT", options.script, "A script; '-' is standard input")->required();
  add_models(*run, options);
  add_common_options(*run, options);
}

void add_repl(CLI::App& app, Options& options) {
  CLI::App* repl = add_command(app, options, Command::repl, "repl", "Work at a prompt",
                               "\nWithout a terminal, lines of standard input are run one after the other; the exit "
                               "status is 1 where one of them had an error.\n"
                               "\nExamples:\n  kinemo repl rc_lowpass.yaml\n  kinemo repl < session.txt");
  add_models(*repl, options);
  repl->add_flag("--prompts", options.prompts, "Show prompts also where input doesn't come from a terminal");
  add_common_options(*repl, options);
}

void add_commands(CLI::App& app, Options& options) {
  add_compile(app, options);
  add_check(app, options);
  add_nets(app, options);
  add_blocks(app, options);
  add_explain(app, options);
  add_export(app, options);
  add_render(app, options);
  add_run(app, options);
  add_repl(app, options);
}

/// The word where a command should stand.
std::string first_word(int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (!word.empty() && word.front() != '-') return word;
  }
  return {};
}

std::string usage_message(const CLI::ParseError& error, int argc, const char* const* argv) {
  const std::string word = first_word(argc, argv);
  const bool known = std::find(command_names.begin(), command_names.end(), word) != command_names.end();
  std::string text = "kinemo: error: ";
  if (word.empty()) {
    text += "a command is missing";
  } else if (!known) {
    text += "there is no command '" + word + "'" + formats::did_you_mean(word, command_names);
  } else {
    text += error.what();
  }
  return text + "\nTry 'kinemo " + (known ? word + " " : "") + "--help'.\n";
}

/// What the other options say of one that wasn't given.
void complete(Options& options) {
  const bool netlist = options.command == Command::export_model && options.format == "spice";
  if (netlist && options.runtime_parameters.empty()) options.runtime_parameters = "on";
}

/// A command line that says all but what the command can't do without.
std::string incomplete(const Options& options) {
  if (options.command == Command::check && !options.list_rules && options.model.empty()) {
    return "kinemo: error: MODEL is required\nTry 'kinemo check --help'.\n";
  }
  if (options.command == Command::render && options.format.empty()) {
    if (const std::string fault = picture_fault(options.output); !fault.empty()) {
      return "kinemo: error: " + (options.output.empty() ? "-o FILE.svg, .png or .pdf is required" : fault) +
             "\nTry 'kinemo render --help'.\n";
    }
  }
  if (options.command == Command::export_model && options.format == "diagram" && !options.runtime_parameters.empty()) {
    return "kinemo: error: --runtime-parameters is for --to spice: a diagram keeps its variables and settings\n"
           "Try 'kinemo export --help'.\n";
  }
  for (const std::string& definition : options.definitions) {
    if (const std::string fault = definition_fault(definition); !fault.empty()) {
      return "kinemo: error: -D: " + fault + "\n";
    }
  }
  return {};
}

}  // namespace

std::variant<Options, Ending> parse_command_line(int argc, const char* const* argv) {
  Options options;
  CLI::App app("Kinemo turns block diagrams and netlists of physical networks into graphs.", "kinemo");
  app.set_version_flag("--version", "kinemo " KINEMO_VERSION);
  app.footer(main_footer);
  app.require_subcommand(1);
  add_commands(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) return Ending{exit_code::usage, {}, usage_message(error, argc, argv)};
    std::ostringstream out;
    app.exit(error, out, out);
    return Ending{exit_code::clean, out.str(), {}};
  }
  if (const std::string message = incomplete(options); !message.empty()) {
    return Ending{exit_code::usage, {}, message};
  }
  complete(options);
  return options;
}

}  // namespace kinemo::app
