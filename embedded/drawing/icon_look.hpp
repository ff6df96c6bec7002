#pragma once

#include "embedded/drawing/canvas.hpp"
#include "platform/block_diagram/icon.hpp"

#include <boost/optional.hpp>

#include <string>

namespace embedded::drawing {

/// The styles of a vector icon that this host honours. Others have no effect: "StrokeScaling", as lines at all ports
/// are equally wide; "LineExtension", as icons reach their ports themselves; "Port", as the style of ports is always
/// that of the most.
struct IconLook {
  bool fit = false;           ///< "Resize" = "FitToBlock": as large as the block
  bool proportional = true;   ///< "Geometric" other than "Off": width and height grow alike
  bool crop = false;          ///< "PreAdjustSize" = "CropToContent": without the file's empty margin
  bool thin_strokes = false;  ///< "StrokeScalingOnResize" = "NonScaling": strokes keep the file's width
  bool normal_strokes =
      false;  ///< "PreAdjustStrokeWidth" = "Normalized": the stroke that the file names first is 1.5 wide
  bool constant_text = false;  ///< "TextScalingOnResize" = "Constant": texts keep the file's size
  bool clip = true;            ///< "Clipping" other than "None"
  bool frame = false;          ///< "Frame" = "On"
  bool rotate = false;         ///< "Rotate" = "On": turns with the block
  bool port_color = false;     ///< "Foreground" = "PortStyled": black becomes the colour of most ports
};

IconLook look_of(const GTIconResource& resource);

/// The colour in which ports of a connection type such as "physical.electrical" are drawn: one of a few dark ones,
/// always the same for a type. Black for the empty type.
GTColor port_color(const std::string& type);

/// Colour of the type that most ports of the block have, of equal ones the first; none for a block without ports.
boost::optional<GTColor> majority_color(const GTBlock& block);

}  // namespace embedded::drawing
