#pragma once

#include "embedded/block_diagram/window.hpp"
#include "embedded/drawing/geometry.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

typedef struct _cairo cairo_t;

namespace embedded::drawing {

class VectorIcon;

enum class Format { Svg, Png, Pdf };

/// A white page on which blocks draw themselves, and the picture file that comes of it. Positions and sizes are in
/// units of the diagram, x to the right and y downward.
class Canvas final : public GTWindow {
 public:
  /// `scale` is the number of pixels of a PNG, or points of the other formats, for each unit.
  /// @throws "kinemo:host:drawing" "InvalidSize" (width, height in pixels or points, limit)
  Canvas(Format format, Size size, double scale = 1);
  ~Canvas() override;
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  /// Ends the page and begins another; of PDF alone. @throws "InvalidSize"
  void nextPage(Size size);
  /// What viewers show as the title of a PDF; nothing in other formats.
  void setTitle(const ustring& title);
  /// An entry of the PDF's outline that leads to the page being drawn, inside of an earlier one or of 0, the outline
  /// itself. Gives its number; 0 in other formats.
  int addOutline(const ustring& text, int inside);
  /// The bytes of the file: the same for the same drawing. Nothing can be drawn afterwards. @throws
  /// "kinemo:host:drawing" "CannotWrite" (reason)
  std::string finish();

  // --- what isn't part of a block
  void drawLine(const std::vector<Point>& points, const GTColor& color, double width = 1);
  /// A filled circle, such as where lines meet.
  void drawDot(Point center, const GTColor& color, double radius);
  void fill(const GTBounds& bounds, const GTColor& color);
  /// One line of text whose point by the alignments of the platform's window stands at `at`. `share` is that of the
  /// font's size.
  void drawText(const ustring& text, Point at, int horizontal, int vertical, const GTColor& color, double share = 1);
  /// The line around a block.
  void drawFrame(const GTBounds& bounds);
  /// Runs `draw` with the origin at a point and with position, colour and alignment as on a new canvas.
  void drawAt(Point origin, const std::function<void()>& draw);
  /// Runs `draw`, and then puts the port labels that it drew into the bounds, each as long as there is room for it.
  void drawWithFittedLabels(const GTBounds& bounds, const std::function<void()>& draw);

  // --- operations of a window
  void setTextAlignment(int horizontal, int vertical) override;
  int lineSpacing() override;
  void moveTo(int x, int y) override;
  void drawString(const ustring& text) override;
  void setForeground(const GTColor& color) override;
  void frameAndFill(const GTBlock& block, const GTBounds& bounds) override;
  void drawImage(const GTBlock& block, const cvArray_tag* image, const GTBounds& bounds, bool rotate,
                 int location) override;
  void drawPortLabel(const GTBlock& block, const GTBounds& bounds, bool left, int index, const ustring& label) override;

  // --- for the drawing of icons
  cairo_t* context() const;
  /// A port label of an icon that has lines to its ports: beside the line, above it or to its right.
  void drawLeadLabel(const GTBlock& block, const GTBounds& bounds, bool left, int index, const ustring& label);
  /// The vector graphics of a file, read once for each canvas. Null after the warning "CannotDrawIcon" (file, reason).
  VectorIcon* vectorIcon(const std::string& file);

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace embedded::drawing
