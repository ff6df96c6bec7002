#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/line_editor.hpp"
#include "apps/kinemo/script_output.hpp"
#include "apps/kinemo/session.hpp"
#include "apps/scripting/diagram_functions.hpp"
#include "embedded/scripting_runtime/completion.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/prompt.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

namespace kinemo::app {

namespace {

namespace runtime = embedded::scripting_runtime;

/// While one is alive, Ctrl-C stops what is computed and not the program.
class InterruptHandler {
 public:
  InterruptHandler() {
    struct sigaction action {};
    action.sa_handler = [](int) { runtime::request_interrupt(); };
    ::sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, &before_);
  }
  InterruptHandler(const InterruptHandler&) = delete;
  InterruptHandler& operator=(const InterruptHandler&) = delete;
  ~InterruptHandler() { ::sigaction(SIGINT, &before_, nullptr); }

 private:
  struct sigaction before_ {};
};

/// Results are shown as wide as the terminal is just now.
void follow_terminal_width() {
  constexpr unsigned short narrowest = 20;
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col >= narrowest) {
    runtime::display_limits().width = size.ws_col;
  }
}

void work_at_terminal(runtime::Prompt& prompt) {
  LineEditor editor([&](const std::string& line) { return runtime::complete(line, prompt.workspace()); });
  const InterruptHandler interrupts;
  std::string line;
  while (!prompt.exit_code()) {
    const LineEditor::Result result = editor.read(prompt.text(), line);
    if (result == LineEditor::Result::end && !prompt.waits()) break;
    if (result != LineEditor::Result::line) {
      prompt.abandon();
      continue;
    }
    follow_terminal_width();
    prompt.enter(line);
  }
}

void work_through_input(runtime::Prompt& prompt, bool show_prompts) {
  const auto show = [&](const char* text) {
    if (show_prompts) runtime::write_output(text);
  };
  const InterruptHandler interrupts;
  show(prompt.text());
  for (std::string line; !prompt.exit_code() && std::getline(std::cin, line);) {
    prompt.enter(line);
    if (!prompt.exit_code()) show(prompt.text());
  }
  prompt.finish();
  show("\n");
}

}  // namespace

int run_repl(Session& session) {
  const scripting::RegisteredDiagramFunctions functions;
  if (!session.open_models()) return exit_code::model_has_errors;
  const bool terminal = ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
  ScriptOutput output(true);
  runtime::Prompt prompt(runtime::base_workspace());
  if (terminal) {
    work_at_terminal(prompt);
  } else {
    work_through_input(prompt, session.options().prompts);
  }
  output.flush();
  if (prompt.exit_code()) return *prompt.exit_code();
  return prompt.failed() && !terminal ? exit_code::model_has_errors : exit_code::clean;
}

}  // namespace kinemo::app
