// Pictures of diagrams.

#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "formats/write_text.hpp"
#include "platform/foundation/exception.hpp"
#include "views/find_block.hpp"
#include "views/picture/picture.hpp"

namespace kinemo::scripting {

namespace {

/// @throws "NotAPicture" (file)
embedded::drawing::Format format_from(const std::string& file) {
  const auto format = views::picture::picture_format(file);
  if (!format) kmf::throw_message(diagram_messages, "NotAPicture", file);
  return *format;
}

/// @throws "UnknownNet" (diagram, what is wrong, what would be valid)
gtPort* net_from(const Call& call, std::size_t input, host::Diagram& diagram) {
  if (call.size() <= input) return nullptr;
  views::UnknownName unknown;
  gtPort* port = views::find_net(diagram, text_from(call, input), unknown);
  if (port == nullptr) {
    kmf::throw_message(diagram_messages, "UnknownNet", diagram.name(), unknown.text, unknown.valid);
  }
  return port;
}

void render_diagram(Call& call) {
  host::System& system = system_from(call, 0);
  host::Diagram& diagram = system.diagram();
  const std::string file = text_from(call, 1);
  const auto format = format_from(file);
  gtPort* net = net_from(call, 2, diagram);
  host::System* only = system.owner() != nullptr ? &system : nullptr;
  const std::string picture =
      views::picture::make_picture(diagram, views::picture::request_picture(diagram, format, only, net));
  std::string reason;
  if (!formats::write_text(file, picture, reason)) kmf::throw_message(diagram_messages, "CannotWrite", file, reason);
}

}  // namespace

std::vector<DiagramFunction> picture_functions() {
  return {{"render_diagram",
           2,
           3,
           render_diagram,
           {"render_diagram(system, file)\nrender_diagram(system, file, net)",
            "Draws a diagram or the inside of a subsystem as a picture (.svg, .png or .pdf).",
            "A PDF of a diagram shows all its systems, each on a page of its own. A net is named by a port such as "
            "'Filter/R1.p', or by the name of a line, relative to the diagram; it is highlighted through all levels. "
            "Pictures of other kinds than PDF show the system where it is, if a diagram was asked for."}}};
}

}  // namespace kinemo::scripting
