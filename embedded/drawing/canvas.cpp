#include "embedded/drawing/canvas.hpp"

#include "embedded/block_diagram/placement.hpp"
#include "embedded/drawing/bitmap.hpp"
#include "embedded/drawing/port_labels.hpp"
#include "embedded/drawing/surface.hpp"
#include "embedded/drawing/text.hpp"
#include "embedded/drawing/vector_icon.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/warning.hpp"

#include <cairo-pdf.h>
#include <boost/optional.hpp>

#include <algorithm>
#include <cmath>
#include <map>

namespace embedded::drawing {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr GTColor black{0.0, 0.0, 0.0, -1, 0};
constexpr GTColor white{1.0, 1.0, 1.0, -1, 0};

/// What a window keeps between its operations.
struct Pen {
  Point at;
  GTColor color = black;
  int horizontal = GT_ALIGN_LEFT;
  int vertical = GT_ALIGN_BASELINE;
};

void set_color(cairo_t* context, const GTColor& color) {
  cairo_set_source_rgb(context, color.red, color.green, color.blue);
}

void paint_white(cairo_t* context) {
  cairo_set_source_rgb(context, 1, 1, 1);
  cairo_paint(context);
}

Size size_of(const GTBounds& bounds) {
  return {static_cast<double>(bounds.right) - bounds.left, static_cast<double>(bounds.bottom) - bounds.top};
}

/// Begin of a piece of a length in a room, by the third of the room where it belongs.
double placed(double begin, double room, double length, int third) {
  return begin + third * (room - length) / 2;
}

}  // namespace

struct Canvas::Parts {
  Parts(Format its_format, Size size, double its_scale)
      : format(its_format),
        scale(its_scale),
        surface(make_surface(format, scaled(size), bytes)),
        context(cairo_create(surface.get())) {
    beginPage();
    text = std::make_unique<TextWriter>(context.get());
  }

  Size scaled(Size size) const { return {size.width * scale, size.height * scale}; }
  void beginPage() {
    cairo_identity_matrix(context.get());
    paint_white(context.get());
    cairo_scale(context.get(), scale, scale);
  }

  Format format;
  double scale;
  std::string bytes;  ///< before the surface, which writes to it until its end
  SurfacePointer surface;
  ContextPointer context;
  std::unique_ptr<TextWriter> text;
  std::map<std::string, std::unique_ptr<VectorIcon>> icons;
  Pen pen;
  boost::optional<std::vector<PortLabel>> labels;  ///< that wait for their block to be drawn
  int page = 1;
};

Canvas::Canvas(Format format, Size size, double scale) : parts_(std::make_unique<Parts>(format, size, scale)) {}

Canvas::~Canvas() = default;

cairo_t* Canvas::context() const {
  return parts_->context.get();
}

void Canvas::nextPage(Size size) {
  const Size points = parts_->scaled(size);
  check_size(parts_->format, points);
  cairo_show_page(context());
  cairo_pdf_surface_set_size(parts_->surface.get(), points.width, points.height);
  parts_->beginPage();
  ++parts_->page;
}

void Canvas::setTitle(const ustring& title) {
  if (parts_->format != Format::Pdf) return;
  cairo_pdf_surface_set_metadata(parts_->surface.get(), CAIRO_PDF_METADATA_TITLE,
                                 kmf::ustring_to_utf8_string(title).c_str());
}

int Canvas::addOutline(const ustring& text, int inside) {
  if (parts_->format != Format::Pdf) return 0;
  const std::string target = "page=" + std::to_string(parts_->page) + " pos=[0 0]";
  return cairo_pdf_surface_add_outline(parts_->surface.get(), inside, kmf::ustring_to_utf8_string(text).c_str(),
                                       target.c_str(), static_cast<cairo_pdf_outline_flags_t>(0));
}

std::string Canvas::finish() {
  parts_->text.reset();
  parts_->icons.clear();
  finish_surface(parts_->format, context(), parts_->bytes);
  return std::move(parts_->bytes);
}

// --- lines and frames

void Canvas::drawLine(const std::vector<Point>& points, const GTColor& color, double width) {
  const SavedContext saved(context());
  set_color(context(), color);
  cairo_set_line_width(context(), width);
  cairo_set_line_join(context(), CAIRO_LINE_JOIN_ROUND);
  for (const Point& point : points) cairo_line_to(context(), point.x, point.y);
  cairo_stroke(context());
}

void Canvas::drawDot(Point center, const GTColor& color, double radius) {
  const SavedContext saved(context());
  set_color(context(), color);
  cairo_arc(context(), center.x, center.y, radius, 0, 2 * pi);
  cairo_fill(context());
}

void Canvas::drawFrame(const GTBounds& bounds) {
  const SavedContext saved(context());
  const Size size = size_of(bounds);
  set_color(context(), black);
  cairo_set_line_width(context(), 1);
  cairo_rectangle(context(), bounds.left, bounds.top, size.width, size.height);
  cairo_stroke(context());
}

void Canvas::fill(const GTBounds& bounds, const GTColor& color) {
  const Size size = size_of(bounds);
  set_color(context(), color);
  cairo_rectangle(context(), bounds.left, bounds.top, size.width, size.height);
  cairo_fill(context());
}

void Canvas::frameAndFill(const GTBlock&, const GTBounds& bounds) {
  fill(bounds, white);
  drawFrame(bounds);
}

void Canvas::drawAt(Point origin, const std::function<void()>& draw) {
  const Pen before = std::exchange(parts_->pen, Pen());
  {
    const SavedContext saved(context());
    cairo_translate(context(), origin.x, origin.y);
    draw();
  }
  parts_->pen = before;
}

// --- texts

void Canvas::setTextAlignment(int horizontal, int vertical) {
  parts_->pen.horizontal = horizontal;
  parts_->pen.vertical = vertical;
}

int Canvas::lineSpacing() {
  return parts_->text->lineSpacing();
}

void Canvas::moveTo(int x, int y) {
  parts_->pen.at = {static_cast<double>(x), static_cast<double>(y)};
}

void Canvas::setForeground(const GTColor& color) {
  parts_->pen.color = color;
}

void Canvas::drawString(const ustring& text) {
  const Pen& pen = parts_->pen;
  set_color(context(), pen.color);
  parts_->text->draw(text, pen.at, pen.horizontal, pen.vertical);
}

void Canvas::drawText(const ustring& text, Point at, int horizontal, int vertical, const GTColor& color, double share) {
  set_color(context(), color);
  parts_->text->draw(text, at, horizontal, vertical, share);
}

void Canvas::drawPortLabel(const GTBlock& block, const GTBounds& bounds, bool left, int index, const ustring& label) {
  if (!parts_->labels) {
    drawWithFittedLabels(bounds, [&] { drawPortLabel(block, bounds, left, index, label); });
    return;
  }
  const block_diagram::PortPlace place = block_diagram::portPlace(block, bounds, left, index);
  if (!label.empty()) parts_->labels->push_back({label, place, parts_->pen.color, port_label_share});
}

void Canvas::drawWithFittedLabels(const GTBounds& bounds, const std::function<void()>& draw) {
  auto before = std::exchange(parts_->labels, std::vector<PortLabel>());
  draw();
  std::swap(before, parts_->labels);
  const auto measure = [this](const ustring& text, double share) { return parts_->text->measure(text, share); };
  for (const PortLabel& label : fit_port_labels(std::move(*before), bounds, measure)) {
    const block_diagram::PortPlace& place = label.place;
    // The text begins at the edge and runs inward: away to the left is aligned left, away to the top aligned at the
    // top.
    drawText(label.text, {place.x - port_label_distance * place.away_x, place.y - port_label_distance * place.away_y},
             place.away_x + GT_ALIGN_CENTER, place.away_y + GT_ALIGN_MIDDLE, label.color, label.share);
  }
}

void Canvas::drawLeadLabel(const GTBlock& block, const GTBounds& bounds, bool left, int index, const ustring& label) {
  constexpr double distance = 2;
  const block_diagram::PortPlace place = block_diagram::portPlace(block, bounds, left, index);
  set_color(context(), parts_->pen.color);
  if (place.away_x != 0) {
    parts_->text->draw(label, {place.x - distance * place.away_x, place.y - 1}, place.away_x + GT_ALIGN_CENTER,
                       GT_ALIGN_BOTTOM, port_label_share);
  } else {
    parts_->text->draw(label, {place.x + distance, place.y - place.away_y}, GT_ALIGN_LEFT,
                       place.away_y + GT_ALIGN_MIDDLE, port_label_share);
  }
}

// --- icons

void Canvas::drawImage(const GTBlock& block, const cvArray_tag* image, const GTBounds& bounds, bool rotate,
                       int location) {
  const SurfacePointer bitmap = bitmap_of(image);
  const Size room = size_of(bounds);
  if (!bitmap || room.width <= 0 || room.height <= 0) return;
  const Size pixels{static_cast<double>(cairo_image_surface_get_width(bitmap.get())),
                    static_cast<double>(cairo_image_surface_get_height(bitmap.get()))};
  const int angle = rotate ? block_diagram::rotation(block) : 0;
  const bool upright = angle % 180 == 0;
  const Size seen = upright ? pixels : Size{pixels.height, pixels.width};
  const double factor = std::min(room.width / seen.width, room.height / seen.height);
  const double x = placed(bounds.left, room.width, seen.width * factor, location % 3);
  const double y = placed(bounds.top, room.height, seen.height * factor, location / 3);
  const SavedContext saved(context());
  cairo_translate(context(), x + seen.width * factor / 2, y + seen.height * factor / 2);
  cairo_rotate(context(), angle * pi / 180);
  if (rotate && block_diagram::mirrored(block)) cairo_scale(context(), -1, 1);
  cairo_scale(context(), factor, factor);
  cairo_set_source_surface(context(), bitmap.get(), -pixels.width / 2, -pixels.height / 2);
  cairo_pattern_set_filter(cairo_get_source(context()), factor > 1 ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD);
  cairo_rectangle(context(), -pixels.width / 2, -pixels.height / 2, pixels.width, pixels.height);
  cairo_fill(context());
}

VectorIcon* Canvas::vectorIcon(const std::string& file) {
  const auto found = parts_->icons.find(file);
  if (found != parts_->icons.end()) return found->second.get();
  std::string reason;
  std::unique_ptr<VectorIcon>& icon = parts_->icons[file];
  icon = VectorIcon::load(file, reason);
  if (!icon)
    kmf::Warning::get().issueWarning(
        kmf::Message(kmf::MessageId("kinemo:host:drawing", "CannotDrawIcon", file, reason)));
  return icon.get();
}

}  // namespace embedded::drawing
