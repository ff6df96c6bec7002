#include "apps/kinemo/pictures.hpp"

#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/foundation/warnings.hpp"

namespace kinemo::app {

void write_picture(Session& session, embedded::block_diagram::Diagram& diagram,
                   const views::picture::PictureRequest& request, const std::string& file) {
  std::string bytes;
  formats::DiagnosticList list;
  {
    const kmf::embedded::WarningCapture warnings;
    bytes = views::picture::make_picture(diagram, request);
    add_warnings(warnings, session.model_file(), list);
  }
  session.console().end_stage("draw");
  session.console().diagnostics(list);
  Output output(file);
  output.stream() << bytes;
  output.commit();
  session.console().end_stage("write");
}

}  // namespace kinemo::app
