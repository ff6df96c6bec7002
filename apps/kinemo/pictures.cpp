#include "apps/kinemo/pictures.hpp"

#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/foundation/warnings.hpp"

namespace kinemo::app {

namespace {

constexpr double least_legible_scale = 0.6;

void tell_small(const Session& session, formats::DiagnosticList& list) {
  list.warning("render:too-small", {session.model_file(), 0, 0},
               "the picture had to be reduced until texts can't be read")
      .notes.push_back({"SVG and PDF can be enlarged, and --system draws a part", {}});
}

}  // namespace

void write_picture(Session& session, embedded::block_diagram::Diagram& diagram,
                   const views::picture::PictureRequest& request, const std::string& file) {
  std::string bytes;
  formats::DiagnosticList list;
  {
    const kmf::embedded::WarningCapture warnings;
    double scale = 1;
    bytes = views::picture::make_picture(diagram, request, &scale);
    add_warnings(warnings, session.model_file(), list);
    if (request.format == embedded::drawing::Format::Png && scale < least_legible_scale) tell_small(session, list);
  }
  session.console().end_stage("draw");
  session.console().diagnostics(list);
  Output output(file);
  output.stream() << bytes;
  output.commit();
  session.console().end_stage("write");
}

}  // namespace kinemo::app
