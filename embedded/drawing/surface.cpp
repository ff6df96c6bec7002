#include "embedded/drawing/surface.hpp"

#include "platform/foundation/exception.hpp"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <cmath>
#include <cstdio>
#include <new>

namespace embedded::drawing {

namespace {

constexpr char group[] = "kinemo:host:drawing";

/// A picture of pixels takes four bytes for each, so its sides are kept shorter than the library's own limit.
double longest_side(Format format) {
  return format == Format::Png ? 16384 : 1e6;
}

std::string number_text(double number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", number);
  return text;
}

cairo_status_t append(void* closure, const unsigned char* data, unsigned int length) {
  try {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
  } catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
  return CAIRO_STATUS_SUCCESS;
}

/// One unit is a pixel; the library's own choice is a point.
cairo_surface_t* new_svg(Size size, std::string& bytes) {
  cairo_surface_t* surface = cairo_svg_surface_create_for_stream(append, &bytes, size.width, size.height);
  cairo_svg_surface_set_document_unit(surface, CAIRO_SVG_UNIT_PX);
  return surface;
}

/// Without the time of its making, so that the same drawing gives the same file.
cairo_surface_t* new_pdf(Size size, std::string& bytes) {
  cairo_surface_t* surface = cairo_pdf_surface_create_for_stream(append, &bytes, size.width, size.height);
  cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_CREATE_DATE, "");
  return surface;
}

cairo_surface_t* new_surface(Format format, Size size, std::string& bytes) {
  switch (format) {
    case Format::Svg:
      return new_svg(size, bytes);
    case Format::Pdf:
      return new_pdf(size, bytes);
    default:
      return cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(std::ceil(size.width)),
                                        static_cast<int>(std::ceil(size.height)));
  }
}

void check_status(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS)
    kmf::throw_message(group, "CannotWrite", std::string(cairo_status_to_string(status)));
}

}  // namespace

void check_size(Format format, Size size) {
  const double limit = longest_side(format);
  const auto fits = [limit](double length) { return length > 0 && length <= limit; };
  if (!fits(size.width) || !fits(size.height))
    kmf::throw_message(group, "InvalidSize", number_text(size.width), number_text(size.height), number_text(limit));
}

SurfacePointer make_surface(Format format, Size size, std::string& bytes) {
  check_size(format, size);
  SurfacePointer surface(new_surface(format, size, bytes));
  check_status(cairo_surface_status(surface.get()));
  return surface;
}

void finish_surface(Format format, cairo_t* context, std::string& bytes) {
  check_status(cairo_status(context));
  cairo_surface_t* const surface = cairo_get_target(context);
  if (format == Format::Png) check_status(cairo_surface_write_to_png_stream(surface, append, &bytes));
  cairo_surface_finish(surface);
  check_status(cairo_surface_status(surface));
}

}  // namespace embedded::drawing
