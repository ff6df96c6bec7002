#include "apps/kinemo/pictures.hpp"

#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/foundation/warnings.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::app {

boost::optional<embedded::drawing::Format> picture_format(const std::string& name) {
  using embedded::drawing::Format;
  const std::string ending = kmf::lower(name.substr(name.rfind('.') + 1));
  if (ending == "svg") return Format::Svg;
  if (ending == "png") return Format::Png;
  if (ending == "pdf") return Format::Pdf;
  return boost::none;
}

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
