#include "views/picture/draw_scene.hpp"

#include "embedded/drawing/draw_block.hpp"
#include "views/layout/geometry.hpp"

#include <cmath>

namespace kinemo::views::picture {

namespace drawing = embedded::drawing;

namespace {

constexpr GTColor black{0, 0, 0, -1, 0};
constexpr GTColor white{1, 1, 1, -1, 0};
constexpr GTColor faint{0.35, 0.35, 0.35, -1, 0};
constexpr double line_width = 1.5;  // as the leads of icons
constexpr double mark_width = 8;
constexpr double dot_radius = 2.8;
constexpr double outline_distance = 2;  // clear of the names below blocks

using Points = std::vector<layout::Point>;

Points rectangle(layout::Point corner, layout::Size size, double wider) {
  const double left = corner.x - wider;
  const double top = corner.y - wider;
  const double right = corner.x + size.width + wider;
  const double bottom = corner.y + size.height + wider;
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}, {left, top}};
}

Points circle(layout::Point center, double radius) {
  constexpr int corners = 24;
  Points points;
  for (int i = 0; i <= corners; ++i) {
    const double angle = 2 * 3.14159265358979323846 * i / corners;
    points.push_back({center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)});
  }
  return points;
}

class Painter {
 public:
  Painter(drawing::Canvas& canvas, const Scene& scene, const Marks& marks)
      : canvas_(canvas), scene_(scene), marks_(marks) {}

  void paint() {
    for (std::size_t i = 0; i < scene_.nets.size(); ++i) underline(i);
    for (std::size_t i = 0; i < scene_.nets.size(); ++i) draw_net(i);
    for (std::size_t i = 0; i < scene_.nets.size(); ++i) draw_labels(i);
    for (std::size_t i = 0; i < scene_.nets.size(); ++i) draw_dots(i);
    for (std::size_t i = 0; i < scene_.shapes.size(); ++i) draw_shape(i);
    for (std::size_t i = 0; i < scene_.shapes.size(); ++i) draw_marks(i);
  }

 private:
  void underline(std::size_t i) {
    if (marks_.nets.count(scene_.nets[i].ports) == 0) return;
    const layout::Route& route = scene_.drawing.routes[i];
    for (const auto& line : route.lines) canvas_.drawLine(line, marks_.light, mark_width);
    for (const layout::Stub& stub : route.stubs) canvas_.drawLine({stub.from, stub.end}, marks_.light, mark_width);
  }

  void draw_net(std::size_t i) {
    const SceneNet& net = scene_.nets[i];
    const layout::Route& route = scene_.drawing.routes[i];
    const double width = marks_.nets.count(net.ports) != 0 ? 2 * line_width : line_width;
    for (const auto& line : route.lines) canvas_.drawLine(line, net.color, width);
    for (const layout::Stub& stub : route.stubs) canvas_.drawLine({stub.from, stub.end}, net.color, width);
  }

  void draw_labels(std::size_t i) {
    const SceneNet& net = scene_.nets[i];
    if (net.label) draw_label(net, net.label->text, net.label->place, net_name_share);
    for (const layout::Stub& stub : scene_.drawing.routes[i].stubs) draw_label(net, net.name, stub.label, stub_share);
  }

  /// Over the ground of names near them.
  void draw_dots(std::size_t i) {
    for (const layout::Point& dot : scene_.drawing.routes[i].dots) {
      canvas_.drawDot(dot, scene_.nets[i].color, dot_radius);
    }
  }

  /// On a ground that hides lines under it.
  void draw_label(const SceneNet& net, const ustring& text, const layout::Rectangle& place, double share) {
    const auto whole = [](double value) { return static_cast<int>(std::lround(value)); };
    const layout::Point middle{place.x + place.width / 2, place.y + place.height / 2};
    const bool marked = marks_.nets.count(net.ports) != 0;
    canvas_.fill({whole(place.x), whole(place.y), whole(place.x + place.width), whole(place.y + place.height)},
                 marked ? marks_.light : white);
    canvas_.drawText(text, middle, GT_ALIGN_CENTER, GT_ALIGN_MIDDLE, net.color, share);
  }

  void draw_shape(std::size_t i) {
    const BlockShape& shape = scene_.shapes[i];
    const layout::Point corner = scene_.drawing.corners[i];
    if (host::isIoPort(*shape.block)) {
      draw_io_port(shape, corner);
    } else {
      draw_block(shape, corner);
    }
    for (const Caption& caption : shape.captions) {
      canvas_.drawText(caption.text, {corner.x + caption.at.x, corner.y + caption.at.y}, caption.horizontal,
                       caption.vertical, caption.faint ? faint : black, caption.share);
    }
  }

  void draw_block(const BlockShape& shape, layout::Point corner) {
    const auto whole = [](double value) { return static_cast<int>(std::lround(value)); };
    const GTBounds bounds{whole(corner.x), whole(corner.y), whole(corner.x + shape.box.size.width),
                          whole(corner.y + shape.box.size.height)};
    drawing::draw_block(canvas_, *shape.block, bounds);
  }

  /// A box with a point where its port is.
  void draw_io_port(const BlockShape& shape, layout::Point corner) {
    const layout::Size size = shape.box.size;
    const double middle = corner.y + size.height / 2;
    const double bottom = corner.y + size.height;
    const bool right = points_right(*shape.block);
    const double back = right ? corner.x : corner.x + size.width;
    const double tip = right ? corner.x + size.width : corner.x;
    const double shoulder = right ? tip - size.height / 2 : tip + size.height / 2;
    canvas_.drawLine(
        {{back, corner.y}, {shoulder, corner.y}, {tip, middle}, {shoulder, bottom}, {back, bottom}, {back, corner.y}},
        black, 1);
  }

  void draw_marks(std::size_t i) {
    const BlockShape& shape = scene_.shapes[i];
    const layout::Point corner = scene_.drawing.corners[i];
    if (marks_.blocks.count(shape.block) != 0)
      canvas_.drawLine(rectangle(corner, shape.box.size, outline_distance), marks_.color, 2);
    for (std::size_t k = 0; k < shape.ports.size(); ++k) {
      if (marks_.ports.count(shape.ports[k]) == 0) continue;
      canvas_.drawLine(circle(port_mark(shape.box.pins[k], corner), port_mark_radius), marks_.color, 1.5);
    }
  }

  drawing::Canvas& canvas_;
  const Scene& scene_;
  const Marks& marks_;
};

}  // namespace

layout::Point port_mark(const layout::Pin& pin, layout::Point corner) {
  constexpr double clearance = 2;
  return layout::moved({corner.x + pin.at.x, corner.y + pin.at.y}, pin.away, port_mark_radius + clearance);
}

void draw_scene(drawing::Canvas& canvas, const Scene& scene, const Marks& marks, drawing::Point corner) {
  const layout::Rectangle& bounds = scene.drawing.bounds;
  canvas.drawAt({corner.x - bounds.x, corner.y - bounds.y}, [&] { Painter(canvas, scene, marks).paint(); });
}

}  // namespace kinemo::views::picture
