#pragma once

// The names of ports inside of the frame of their block.

#include "embedded/block_diagram/placement.hpp"
#include "embedded/block_diagram/window.hpp"
#include "embedded/drawing/geometry.hpp"

#include <functional>
#include <vector>

namespace embedded::drawing {

struct PortLabel {
  ustring text;
  block_diagram::PortPlace place;
  GTColor color;
  double share;  ///< of the font's size
};

/// Size of one line of text whose font has a share of the usual size.
using MeasureText = std::function<Size(const ustring&, double)>;

/// Share of the font's size of port labels that have enough room.
constexpr double port_label_share = 0.7;
/// Between the edge and its labels.
constexpr double port_label_distance = 3;

/// Shortens and shrinks labels of one block until each side has its half of the bounds, or what the other side leaves,
/// and no two of a side overlap. A label that couldn't be read is left out.
std::vector<PortLabel> fit_port_labels(std::vector<PortLabel> labels, const GTBounds& bounds,
                                       const MeasureText& measure);

}  // namespace embedded::drawing
