#include "embedded/drawing/vector_icon.hpp"

#include "embedded/drawing/svg_text.hpp"
#include "embedded/foundation/read_file.hpp"

#include <librsvg/rsvg.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

namespace embedded::drawing {

namespace {

constexpr std::size_t file_limit = std::size_t{1} << 26;
constexpr double pixels_per_inch = 96;
/// What is smaller or larger in a file has no size.
constexpr double least_size = 1e-3;
constexpr double most_size = 1e5;

bool is_size(double width, double height) {
  return width >= least_size && height >= least_size && width <= most_size && height <= most_size;
}

std::string without_end_blanks(std::string text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
  return text;
}

/// Whether the file says of its page that it has no extent.
bool has_empty_page(RsvgHandle* handle) {
  gboolean has_width = FALSE;
  gboolean has_height = FALSE;
  RsvgLength width{};
  RsvgLength height{};
  rsvg_handle_get_intrinsic_dimensions(handle, &has_width, &width, &has_height, &height, nullptr, nullptr);
  return (has_width && width.length == 0) || (has_height && height.length == 0);
}

ObjectPointer<RsvgHandle> parse(const std::string& text, std::string& reason) {
  GError* error = nullptr;
  const auto* data = reinterpret_cast<const guint8*>(text.data());
  ObjectPointer<RsvgHandle> handle(rsvg_handle_new_from_data(data, text.size(), &error));
  const ErrorPointer owned(error);
  if (!handle) reason = owned ? without_end_blanks(owned->message) : "it holds no vector graphics";
  if (handle) rsvg_handle_set_dpi(handle.get(), pixels_per_inch);
  return handle;
}

void set_style_sheet(RsvgHandle* handle, const std::string& sheet) {
  rsvg_handle_set_stylesheet(handle, reinterpret_cast<const guint8*>(sheet.data()), sheet.size(), nullptr);
}

std::string hex(const GTColor& color) {
  const auto part = [](double share) { return static_cast<unsigned>(std::lround(255 * std::clamp(share, 0.0, 1.0))); };
  char text[16];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", part(color.red), part(color.green), part(color.blue));
  return text;
}

}  // namespace

std::unique_ptr<VectorIcon> VectorIcon::load(const std::string& file, std::string& reason) {
  auto text = kmf::embedded::read_regular_file(file, file_limit);
  if (!text) {
    reason = "there is no such file, or it can't be opened";
    return nullptr;
  }
  ObjectPointer<RsvgHandle> handle = parse(*text, reason);
  if (!handle) return nullptr;
  if (has_empty_page(handle.get())) {
    reason = "its width or height is 0";
    return nullptr;
  }
  return std::unique_ptr<VectorIcon>(new VectorIcon(std::move(*text), std::move(handle)));
}

VectorIcon::VectorIcon(std::string text, ObjectPointer<RsvgHandle> handle)
    : text_(std::move(text)), handle_(std::move(handle)) {
  measurePage();
  measureContent();
}

void VectorIcon::measurePage() {
  constexpr double default_size = 100;
  gboolean has_view = FALSE;
  RsvgRectangle view{};
  rsvg_handle_get_intrinsic_dimensions(handle_.get(), nullptr, nullptr, nullptr, nullptr, &has_view, &view);
  if (!rsvg_handle_get_intrinsic_size_in_pixels(handle_.get(), &page_.width, &page_.height)) {
    page_.width = has_view ? view.width : 0;
    page_.height = has_view ? view.height : 0;
  }
  has_size_ = is_size(page_.width, page_.height);
  if (!has_size_) page_.width = page_.height = default_size;
  if (has_view && is_size(view.width, view.height))
    unit_ = std::min(page_.width / view.width, page_.height / view.height);
}

void VectorIcon::measureContent() {
  const SurfacePointer record(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
  const ContextPointer context(cairo_create(record.get()));
  render(context.get(), handle_.get());
  Rectangle paint;
  cairo_recording_surface_ink_extents(record.get(), &paint.x, &paint.y, &paint.width, &paint.height);
  const RsvgRectangle viewport{0, 0, page_.width, page_.height};
  RsvgRectangle shapes{};
  rsvg_handle_get_geometry_for_layer(handle_.get(), nullptr, &viewport, nullptr, &shapes, nullptr);
  content_ = around(paint, {shapes.x, shapes.y, shapes.width, shapes.height});
}

Rectangle VectorIcon::around(const Rectangle& a, const Rectangle& b) {
  if (a.width <= 0 || a.height <= 0) return b;
  const double left = std::min(a.x, b.x);
  const double top = std::min(a.y, b.y);
  return {left, top, std::max(a.x + a.width, b.x + b.width) - left, std::max(a.y + a.height, b.y + b.height) - top};
}

boost::optional<Size> VectorIcon::pageSize() const {
  if (!has_size_) return boost::none;
  return Size{page_.width, page_.height};
}

void VectorIcon::render(cairo_t* context, RsvgHandle* handle) const {
  const RsvgRectangle viewport{0, 0, page_.width, page_.height};
  rsvg_handle_render_document(handle, context, &viewport, nullptr);
}

VectorIcon::Changes VectorIcon::changes(double x_factor, double y_factor, const IconLook& look) const {
  constexpr double normal_width = 1.5;
  Changes changes;
  if (look.thin_strokes) changes.strokes /= std::sqrt(x_factor * y_factor);
  if (look.normal_strokes) changes.strokes *= normal_width / std::max(first_stroke_width(text_) * unit_, least_size);
  if (look.constant_text) {
    changes.texts_x = 1 / x_factor;
    changes.texts_y = 1 / y_factor;
  }
  return changes;
}

RsvgHandle* VectorIcon::variant(const Changes& changes) {
  const std::string color = changes.foreground ? hex(*changes.foreground) : std::string();
  std::string key = color;
  // Sizes that differ by less than a hundredth look alike.
  for (const double factor : {changes.strokes, changes.texts_x, changes.texts_y})
    key += " " + std::to_string(std::lround(std::log(factor) * 100));
  if (key == " 0 0 0") return handle_.get();
  ObjectPointer<RsvgHandle>& handle = variants_[key];
  if (!handle) {
    std::string reason;
    handle = parse(changedText(changes, color), reason);
    if (handle && !color.empty()) set_style_sheet(handle.get(), foreground_style_sheet(color));
  }
  return handle ? handle.get() : handle_.get();
}

std::string VectorIcon::changedText(const Changes& changes, const std::string& color) const {
  std::string text = with_stroke_widths(text_, changes.strokes);
  if (changes.texts_x != 1 || changes.texts_y != 1) text = with_texts_stretched(text, changes.texts_x, changes.texts_y);
  return color.empty() ? text : with_foreground(text, color);
}

void VectorIcon::draw(cairo_t* context, Size room, const IconLook& look, const boost::optional<GTColor>& foreground) {
  const bool crop = look.crop && is_size(content_.width, content_.height);
  const Rectangle& shown = crop ? content_ : page_;
  double x_factor = look.fit ? room.width / shown.width : 1;
  double y_factor = look.fit ? room.height / shown.height : 1;
  if (look.proportional) x_factor = y_factor = std::min(x_factor, y_factor);
  Changes wanted = changes(x_factor, y_factor, look);
  wanted.foreground = foreground;
  const SavedContext saved(context);
  if (look.clip) {
    cairo_rectangle(context, 0, 0, room.width, room.height);
    cairo_clip(context);
  }
  cairo_translate(context, (room.width - shown.width * x_factor) / 2, (room.height - shown.height * y_factor) / 2);
  cairo_scale(context, x_factor, y_factor);
  cairo_translate(context, -shown.x, -shown.y);
  render(context, variant(wanted));
}

}  // namespace embedded::drawing
