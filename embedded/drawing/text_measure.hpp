#pragma once

// How large texts will be, before there is a canvas.

#include "embedded/drawing/canvas.hpp"

namespace embedded::drawing {

class TextWriter;

class TextMeasure {
 public:
  TextMeasure();
  ~TextMeasure();

  /// One line of text in units of the diagram, as canvases draw it. `share` is that of the font's size.
  Size operator()(const ustring& text, double share = 1);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace embedded::drawing
