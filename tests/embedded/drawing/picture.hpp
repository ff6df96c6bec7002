#pragma once

// What a canvas shows, pixel by pixel.

#include "embedded/drawing/canvas.hpp"
#include "embedded/drawing/handles.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

namespace embedded::drawing::test {

class Picture {
 public:
  /// Ends the canvas, which must be of PNG.
  explicit Picture(Canvas& canvas) : bytes_(canvas.finish()) {
    surface_.reset(cairo_image_surface_create_from_png_stream(read, this));
    if (cairo_surface_status(surface_.get()) != CAIRO_STATUS_SUCCESS) throw std::runtime_error("no picture");
  }

  int width() const { return cairo_image_surface_get_width(surface_.get()); }
  int height() const { return cairo_image_surface_get_height(surface_.get()); }
  /// Red, green and blue as 0xRRGGBB.
  std::uint32_t at(int x, int y) const {
    std::uint32_t pixel = 0;
    const int stride = cairo_image_surface_get_stride(surface_.get());
    std::memcpy(&pixel, cairo_image_surface_get_data(surface_.get()) + y * stride + x * 4, sizeof pixel);
    return pixel & 0xFFFFFF;
  }

  /// The smallest rectangle around all that isn't white: first and last pixels.
  struct Ink {
    int left = 1 << 20;
    int top = 1 << 20;
    int right = -1;
    int bottom = -1;
  };
  Ink ink() const {
    Ink found;
    for (int y = 0; y < height(); ++y) {
      for (int x = 0; x < width(); ++x) {
        if (at(x, y) == 0xFFFFFF) continue;
        found.left = std::min(found.left, x);
        found.top = std::min(found.top, y);
        found.right = std::max(found.right, x);
        found.bottom = std::max(found.bottom, y);
      }
    }
    return found;
  }

 private:
  static cairo_status_t read(void* closure, unsigned char* data, unsigned int length) {
    auto& self = *static_cast<Picture*>(closure);
    if (self.done_ + length > self.bytes_.size()) return CAIRO_STATUS_READ_ERROR;
    std::memcpy(data, self.bytes_.data() + self.done_, length);
    self.done_ += length;
    return CAIRO_STATUS_SUCCESS;
  }

  std::string bytes_;
  std::size_t done_ = 0;
  SurfacePointer surface_;
};

}  // namespace embedded::drawing::test
