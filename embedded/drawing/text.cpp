#include "embedded/drawing/text.hpp"

#include "platform/foundation/strings.hpp"

#include <pango/pangocairo.h>

#include <cmath>

namespace embedded::drawing {

namespace {

/// Height of the font in units of the diagram.
constexpr double font_size = 10;

double units(int pango_units) {
  return static_cast<double>(pango_units) / PANGO_SCALE;
}

struct EndFontOptions {
  void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
};
struct EndFont {
  void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
};

/// Glyphs at the places that their shapes give, so that texts are as wide at any scale.
void scale_freely(PangoLayout* layout) {
  const std::unique_ptr<cairo_font_options_t, EndFontOptions> options(cairo_font_options_create());
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  pango_cairo_context_set_font_options(pango_layout_get_context(layout), options.get());
}

double left_of(const PangoRectangle& extents, int horizontal) {
  const double width = units(extents.width);
  if (horizontal == GT_ALIGN_CENTER) return -width / 2;
  return horizontal == GT_ALIGN_RIGHT ? -width : 0;
}

double top_of(const PangoRectangle& extents, int baseline, int vertical) {
  const double height = units(extents.height);
  switch (vertical) {
    case GT_ALIGN_TOP:
      return 0;
    case GT_ALIGN_MIDDLE:
      return -height / 2;
    case GT_ALIGN_BOTTOM:
      return -height;
    default:
      return -units(baseline);
  }
}

}  // namespace

TextWriter::TextWriter(cairo_t* context) : context_(context), layout_(pango_cairo_create_layout(context)) {
  scale_freely(layout_.get());
  pango_layout_set_single_paragraph_mode(layout_.get(), TRUE);
  setSize(1);
  pango_layout_set_text(layout_.get(), "Mg", -1);
  PangoRectangle extents;
  pango_layout_get_extents(layout_.get(), nullptr, &extents);
  line_spacing_ = static_cast<int>(std::ceil(units(extents.height)));
}

void TextWriter::setSize(double size) {
  if (size == size_) return;
  const std::unique_ptr<PangoFontDescription, EndFont> font(pango_font_description_from_string("DejaVu Sans, Sans"));
  pango_font_description_set_absolute_size(font.get(), size * font_size * PANGO_SCALE);
  pango_layout_set_font_description(layout_.get(), font.get());
  size_ = size;
}

void TextWriter::setText(const ustring& text, double size) {
  setSize(size);
  const std::string utf8 = kmf::ustring_to_utf8_string(text);
  pango_layout_set_text(layout_.get(), utf8.data(), static_cast<int>(utf8.size()));
}

Size TextWriter::measure(const ustring& text, double size) {
  setText(text, size);
  PangoRectangle extents;
  pango_layout_get_extents(layout_.get(), nullptr, &extents);
  return {units(extents.width), units(extents.height)};
}

void TextWriter::draw(const ustring& text, Point at, int horizontal, int vertical, double size) {
  setText(text, size);
  pango_cairo_update_layout(context_, layout_.get());
  PangoRectangle extents;
  pango_layout_get_extents(layout_.get(), nullptr, &extents);
  const int baseline = pango_layout_get_baseline(layout_.get());
  cairo_move_to(context_, at.x + left_of(extents, horizontal), at.y + top_of(extents, baseline, vertical));
  pango_cairo_show_layout(context_, layout_.get());
  cairo_new_path(context_);
}

}  // namespace embedded::drawing
