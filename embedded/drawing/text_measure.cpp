#include "embedded/drawing/text_measure.hpp"

#include "embedded/drawing/handles.hpp"
#include "embedded/drawing/text.hpp"

namespace embedded::drawing {

struct TextMeasure::Parts {
  Parts()
      : surface(cairo_recording_surface_create(CAIRO_CONTENT_COLOR, nullptr)),
        context(cairo_create(surface.get())),
        writer(context.get()) {}

  SurfacePointer surface;
  ContextPointer context;
  TextWriter writer;
};

TextMeasure::TextMeasure() : parts_(std::make_unique<Parts>()) {}

TextMeasure::~TextMeasure() = default;

Size TextMeasure::operator()(const ustring& text, double share) {
  return parts_->writer.measure(text, share);
}

}  // namespace embedded::drawing
