// Pictures of systems of a diagram, as files.
#pragma once

#include "embedded/drawing/canvas.hpp"
#include "views/picture/marks.hpp"

#include <boost/optional.hpp>

#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
class System;
}  // namespace embedded::block_diagram

namespace kinemo::views::picture {

/// By the ending of a file's name, or by a name such as "svg"; none for any other.
boost::optional<embedded::drawing::Format> picture_format(const std::string& name);

struct PictureRequest {
  embedded::drawing::Format format = embedded::drawing::Format::Svg;
  /// One for each page, at least one, and a single one but for PDF. Pages of several tell the path of their system.
  std::vector<embedded::block_diagram::System*> systems;
  Marks marks;
};

/// A picture of one system; without it, of all systems where the format has pages, and else of the one where the net
/// is, or of the top. The net of the port is marked; null for none.
PictureRequest request_picture(embedded::block_diagram::Diagram& diagram, embedded::drawing::Format format,
                               embedded::block_diagram::System* system, gtPort* net);

/// The bytes of the file: one unit of the diagram is a pixel or point of SVG and PDF and two pixels of PNG (down to one
/// in large pictures), less where the page would be too large for the format. Warnings of icons that can't be drawn are
/// issued.
/// @throws "kinemo:host:drawing" "CannotWrite" (reason)
/// `scale` becomes the pixels or points of a unit.
std::string make_picture(embedded::block_diagram::Diagram& diagram, const PictureRequest& request,
                         double* scale = nullptr);

/// Whether a port of the marked net stands in the system.
bool shows_net(const PictureRequest& request, const embedded::block_diagram::System& system);

}  // namespace kinemo::views::picture
