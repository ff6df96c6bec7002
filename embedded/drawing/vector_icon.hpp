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

  /// The size that the file gives its page, in pixels; none where it gives none.
  boost::optional<Size> pageSize() const;
  /// Draws into the rectangle of a size at the origin. Without a colour the file's own stay.
  void draw(cairo_t* context, Size room, const IconLook& look, const boost::optional<GTColor>& foreground);

 private:
  struct Rectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
  };

  VectorIcon(std::string text, ObjectPointer<RsvgHandle> handle);
  static Rectangle around(const Rectangle& a, const Rectangle& b);
  void measurePage();
  void measureContent();
  /// The graphics in a colour and with strokes of a share of their width. Blocks of one size share it.
  RsvgHandle* variant(double stroke_factor, const boost::optional<GTColor>& foreground);
  void render(cairo_t* context, RsvgHandle* handle) const;

  std::string text_;
  ObjectPointer<RsvgHandle> handle_;
  std::map<std::string, ObjectPointer<RsvgHandle>> variants_;
  Rectangle page_;         ///< the whole page, at the origin
  bool has_size_ = false;  ///< whether the file gives the page its size
  Rectangle content_;      ///< around all shapes, also those without paint, by which a file keeps a margin
};

}  // namespace embedded::drawing
