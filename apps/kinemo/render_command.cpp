#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/pictures.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "views/find_block.hpp"

namespace kinemo::app {

namespace host = embedded::block_diagram;

namespace {

void tell(const views::UnknownName& unknown, const char* option, const std::string& file,
          formats::DiagnosticList& list) {
  list.error("render:unknown-" + std::string(option), {file, 0, 0}, unknown.text)
      .notes.push_back({"valid: " + unknown.valid, {}});
}

/// The system of --system; null without one, and where there is none, which is told then.
host::System* chosen_system(host::Diagram& diagram, const Session& session, formats::DiagnosticList& list) {
  if (session.options().system.empty()) return nullptr;
  views::UnknownName unknown;
  host::System* system = views::find_system(diagram, session.options().system, unknown);
  if (system == nullptr) tell(unknown, "system", session.model_file(), list);
  return system;
}

/// The same for --net.
gtPort* chosen_net(host::Diagram& diagram, const Session& session, formats::DiagnosticList& list) {
  if (session.options().net.empty()) return nullptr;
  views::UnknownName unknown;
  gtPort* port = views::find_net(diagram, session.options().net, unknown);
  if (port == nullptr) tell(unknown, "net", session.model_file(), list);
  return port;
}

void tell_elsewhere(Session& session) {
  const Options& options = session.options();
  formats::DiagnosticList list;
  list.warning(
      "render:net-elsewhere", {session.model_file(), 0, 0},
      "the net '" + options.net + "' doesn't reach the system '" + options.system + "', so nothing is highlighted");
  session.console().diagnostics(list);
}

}  // namespace

int run_render(Session& session) {
  formats::DiagnosticList list;
  host::Diagram* diagram = session.read(list);
  session.console().diagnostics(list);
  if (diagram == nullptr) return exit_code::model_has_errors;
  formats::DiagnosticList names;
  host::System* system = chosen_system(*diagram, session, names);
  gtPort* net = chosen_net(*diagram, session, names);
  session.console().diagnostics(names);
  if (names.has_errors()) return exit_code::usage;
  const Options& options = session.options();
  const auto format = views::picture::picture_format(options.format.empty() ? options.output : options.format);
  const auto request = views::picture::request_picture(*diagram, *format, system, net);
  if (net != nullptr && system != nullptr && !views::picture::shows_net(request, *system)) tell_elsewhere(session);
  write_picture(session, *diagram, request, options.output);
  return exit_code::clean;
}

}  // namespace kinemo::app
