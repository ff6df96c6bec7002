#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/script_output.hpp"
#include "apps/kinemo/session.hpp"
#include "apps/scripting/diagram_functions.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/script.hpp"
#include "formats/read_text.hpp"

#include <iostream>

namespace kinemo::app {

namespace {

namespace runtime = embedded::scripting_runtime;

std::string read_script(const std::string& file) {
  std::string reason;
  const auto text = file == "-" ? formats::read_text(std::cin, reason) : formats::read_given_text(file, reason);
  if (!text) throw UsageError("can't read '" + file + "': " + reason);
  return *text;
}

int run(const std::string& text, const std::string& name) {
  try {
    runtime::run_script(text, name, runtime::base_workspace());
  } catch (const runtime::ExitRequest& request) {
    return request.code();
  } catch (const kmf::Exception& error) {
    runtime::write_error_output(to_text(runtime::problem_of(error)));
    return exit_code::model_has_errors;
  }
  return exit_code::clean;
}

}  // namespace

int run_script_command(Session& session) {
  const std::string& file = session.options().script;
  const std::string text = read_script(file);
  const scripting::RegisteredDiagramFunctions functions;
  if (!session.open_models()) return exit_code::model_has_errors;
  ScriptOutput output(false);
  const int code = run(text, file == "-" ? "<stdin>" : file);
  output.flush();
  session.console().end_stage("run");
  return code;
}

}  // namespace kinemo::app
