#include "embedded/drawing/bitmap.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace embedded::drawing {

namespace {

/// More pixels than any icon shows.
constexpr std::size_t longest_side = 4096;

class TrueColor {
 public:
  explicit TrueColor(const cvArray_tag* image)
      : image_(image), rows_(cvGetDimensions(image)[0]), columns_(cvGetDimensions(image)[1]) {
    const cvClassID class_id = cvGetClassID(image);
    const bool whole = class_id != cvDOUBLE_CLASS && class_id != cvSINGLE_CLASS && class_id != cvLOGICAL_CLASS;
    factor_ = whole ? 1 : 255;
    step_ = (std::max(rows_, columns_) + longest_side - 1) / longest_side;
  }

  std::size_t rows() const { return (rows_ + step_ - 1) / step_; }
  std::size_t columns() const { return (columns_ + step_ - 1) / step_; }
  std::uint32_t pixel(std::size_t row, std::size_t column) const {
    const std::size_t at = row * step_ + rows_ * column * step_;
    const std::size_t plane = rows_ * columns_;
    return channel(at) << 16 | channel(at + plane) << 8 | channel(at + 2 * plane);
  }

 private:
  std::uint32_t channel(std::size_t i) const {
    const double value = factor_ * cvGetElement(image_, i);
    return value > 0 ? static_cast<std::uint32_t>(std::lround(std::min(value, 255.0))) : 0;
  }

  const cvArray_tag* image_;
  std::size_t rows_;
  std::size_t columns_;
  std::size_t step_ = 1;
  double factor_ = 1;
};

bool is_true_color(const cvArray_tag* image) {
  const auto& dimensions = cvGetDimensions(image);
  return (cvIsNumeric(image) || cvIsLogical(image)) && dimensions.size() == 3 && dimensions[2] == 3 &&
         !cvIsEmpty(image);
}

}  // namespace

SurfacePointer bitmap_of(const cvArray_tag* image) {
  if (image == nullptr || !is_true_color(image)) return nullptr;
  const TrueColor pixels(image);
  SurfacePointer surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(pixels.columns()),
                                                    static_cast<int>(pixels.rows())));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  unsigned char* data = cairo_image_surface_get_data(surface.get());
  const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get()));
  for (std::size_t row = 0; row < pixels.rows(); ++row) {
    for (std::size_t column = 0; column < pixels.columns(); ++column) {
      const std::uint32_t pixel = pixels.pixel(row, column);
      std::memcpy(data + row * stride + column * sizeof pixel, &pixel, sizeof pixel);
    }
  }
  cairo_surface_mark_dirty(surface.get());
  return surface;
}

}  // namespace embedded::drawing
