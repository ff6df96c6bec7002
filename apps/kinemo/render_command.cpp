#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/pictures.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "views/find_block.hpp"
#include "views/systems.hpp"

namespace kinemo::app {

namespace host = embedded::block_diagram;

namespace {

constexpr GTColor net_color{0.9, 0.45, 0.0, -1, 0};
constexpr GTColor net_light{1.0, 0.85, 0.5, -1, 0};

void tell(const views::UnknownName& unknown, const char* option, const std::string& file,
          formats::DiagnosticList& list) {
  list.error("render:unknown-" + std::string(option), {file, 0, 0}, unknown.text)
      .notes.push_back({"valid: " + unknown.valid, {}});
}

class Request {
 public:
  Request(const Options& options, host::Diagram& diagram, const std::string& file, formats::DiagnosticList& list)
      : options_(options), diagram_(diagram), file_(file), list_(list) {}

  views::picture::PictureRequest make() {
    views::picture::PictureRequest request;
    request.format = *picture_format(options_.format.empty() ? options_.output : options_.format);
    gtPort* port = mark_net(request.marks);
    choose_systems(request, port);
    request.titles = request.systems.size() > 1;
    return request;
  }

 private:
  gtPort* mark_net(views::picture::Marks& marks) {
    if (options_.net.empty()) return nullptr;
    views::UnknownName unknown;
    gtPort* port = views::find_net(diagram_, options_.net, unknown);
    if (port == nullptr) {
      tell(unknown, "net", file_, list_);
      return nullptr;
    }
    marks.color = net_color;
    marks.light = net_light;
    marks.add_net(*port);
    return port;
  }

  /// The system that was asked for; all of them where the format has pages; otherwise the one where the net is, or the
  /// top.
  void choose_systems(views::picture::PictureRequest& request, const gtPort* port) {
    views::UnknownName unknown;
    if (!options_.system.empty()) {
      host::System* system = views::find_system(diagram_, options_.system, unknown);
      if (system == nullptr) return tell(unknown, "system", file_, list_);
      request.systems = {system};
    } else if (request.format == embedded::drawing::Format::Pdf) {
      views::for_each_system(diagram_, [&](host::System& system) { request.systems.push_back(&system); });
    } else {
      request.systems = {port != nullptr ? &host::parentSystem(*port->getGrOwnerBlock()) : &diagram_.root()};
    }
  }

  const Options& options_;
  host::Diagram& diagram_;
  const std::string& file_;
  formats::DiagnosticList& list_;
};

}  // namespace

int run_render(Session& session) {
  formats::DiagnosticList list;
  host::Diagram* diagram = session.read(list);
  session.console().diagnostics(list);
  if (diagram == nullptr) return exit_code::model_has_errors;
  formats::DiagnosticList names;
  const views::picture::PictureRequest request =
      Request(session.options(), *diagram, session.model_file(), names).make();
  session.console().diagnostics(names);
  if (names.has_errors()) return exit_code::usage;
  write_picture(session, *diagram, request, session.options().output);
  return exit_code::clean;
}

}  // namespace kinemo::app
