#pragma once

#include "embedded/drawing/handles.hpp"
#include "embedded/drawing/icon_look.hpp"

#include <map>
#include <memory>
#include <string>

typedef struct _RsvgHandle RsvgHandle;

namespace embedded::drawing {

/// The vector graphics of one SVG file. What it refers to outside of itself isn't loaded.
class VectorIcon {
 public:
  /// Null, with the reason, for a file that can't be read.
  static std::unique_ptr<VectorIcon> load(const std::string& file, std::string& reason);

  /// The size that the file gives its page, in pixels; none where it gives none, or one that no block has.
  boost::optional<Size> pageSize() const;
  /// Draws into the rectangle of a size at the origin. Without a colour the file's own stay.
  void draw(cairo_t* context, Size room, const IconLook& look, const boost::optional<GTColor>& foreground);

 private:
  VectorIcon(std::string text, ObjectPointer<RsvgHandle> handle);
  static Rectangle around(const Rectangle& a, const Rectangle& b);
  void measurePage();
  void measureContent();
  /// How the graphics differ from the file's.
  struct Changes {
    double strokes = 1;  ///< share of their widths
    double texts_x = 1;  ///< stretching of texts
    double texts_y = 1;
    boost::optional<GTColor> foreground;
  };
  Changes changes(double x_factor, double y_factor, const IconLook& look) const;
  /// The graphics with changes. Blocks of one size share it.
  RsvgHandle* variant(const Changes& changes);
  std::string changedText(const Changes& changes, const std::string& color) const;
  void render(cairo_t* context, RsvgHandle* handle) const;

  std::string text_;
  ObjectPointer<RsvgHandle> handle_;
  std::map<std::string, ObjectPointer<RsvgHandle>> variants_;
  Rectangle page_;         ///< the whole page, at the origin
  double unit_ = 1;        ///< of the file's coordinates, in pixels
  bool has_size_ = false;  ///< whether the file gives the page its size
  Rectangle content_;      ///< around all shapes, also those without paint, by which a file keeps a margin
};

}  // namespace embedded::drawing
