#pragma once

// Texts on a canvas: one line in one font.

#include "embedded/drawing/canvas.hpp"
#include "embedded/drawing/handles.hpp"

typedef struct _PangoLayout PangoLayout;

namespace embedded::drawing {

/// Draws lines of text on one context.
class TextWriter {
 public:
  explicit TextWriter(cairo_t* context);

  int lineSpacing() const { return line_spacing_; }
  /// Width and height of one line. `size` is a share of the font's.
  Size measure(const ustring& text, double size = 1);
  /// One line whose point by the alignments (of the platform's window) stands at `at`. `size` as above.
  void draw(const ustring& text, Point at, int horizontal, int vertical, double size = 1);

 private:
  void setSize(double size);
  void setText(const ustring& text, double size);

  cairo_t* context_;
  ObjectPointer<PangoLayout> layout_;
  int line_spacing_;
  double size_ = 0;
};

}  // namespace embedded::drawing
