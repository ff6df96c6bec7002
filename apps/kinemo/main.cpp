// kinemo: the command-line program.

#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/console.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/options.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "platform/foundation/exception.hpp"

#include <csignal>
#include <cstdio>
#include <new>

namespace kinemo::app {

namespace {

int run_command(const Options& options, Console& console) {
  Session session(options, console);
  switch (options.command) {
    case Command::compile:
      return run_compile(session);
    case Command::check:
      return run_check(session);
    case Command::nets:
      return run_nets(session);
    case Command::blocks:
      return run_blocks(session);
    case Command::export_model:
      return run_export(session);
    case Command::explain:
      return run_explain(session);
    case Command::render:
      return run_render(session);
    case Command::run:
      return run_script_command(session);
    case Command::repl:
      return run_repl(session);
  }
  return exit_code::internal;
}

/// Every way in which a command can fail becomes a message and an exit code here.
int run_guarded(const Options& options, Console& console) {
  try {
    return run_command(options, console);
  } catch (const ClosedPipe&) {
    return exit_code::clean;
  } catch (const UsageError& error) {
    console.error(error.what());
    return exit_code::usage;
  } catch (const std::bad_alloc&) {
    console.error("internal error: out of memory");
  } catch (const kmf::Exception& error) {
    console.error("internal error: " + kmf::render_error(error));
  } catch (const std::exception& error) {
    console.error(std::string("internal error: ") + error.what());
  } catch (...) {
    console.error("internal error");
  }
  return exit_code::internal;
}

int end(const Ending& ending) {
  std::fputs(ending.message.c_str(), stderr);
  if (ending.output.empty()) return ending.exit_code;
  try {
    Output output("-");
    output.stream() << ending.output;
    output.commit();
  } catch (const ClosedPipe&) {
    return exit_code::clean;
  } catch (const UsageError& error) {
    std::fprintf(stderr, "kinemo: error: %s\n", error.what());
    return exit_code::usage;
  }
  return ending.exit_code;
}

}  // namespace

}  // namespace kinemo::app

int main(int argc, char** argv) {
  // A reader that leaves early is told by the failing write.
  std::signal(SIGPIPE, SIG_IGN);
  const auto parsed = kinemo::app::parse_command_line(argc, argv);
  if (const auto* ending = std::get_if<kinemo::app::Ending>(&parsed)) return kinemo::app::end(*ending);
  const auto& options = std::get<kinemo::app::Options>(parsed);
  kinemo::app::Console console(options);
  return kinemo::app::run_guarded(options, console);
}
