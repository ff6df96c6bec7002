// Pictures of systems of a diagram, as files.
#pragma once

#include "embedded/drawing/canvas.hpp"
#include "views/picture/marks.hpp"

#include <string>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
class System;
}  // namespace embedded::block_diagram

namespace kinemo::views::picture {

struct PictureRequest {
  embedded::drawing::Format format = embedded::drawing::Format::Svg;
  std::vector<embedded::block_diagram::System*> systems;  ///< one for each page; a single one but for PDF
  bool titles = false;                                    ///< each page tells the path of its system
  Marks marks;
};

/// The bytes of the file: one unit of the diagram is a pixel or point of SVG and PDF and two pixels of PNG, less where
/// the page would be too large for the format. Warnings of icons that can't be drawn are issued.
/// @throws "kinemo:host:drawing" "CannotWrite" (reason)
std::string make_picture(embedded::block_diagram::Diagram& diagram, const PictureRequest& request);

}  // namespace kinemo::views::picture
