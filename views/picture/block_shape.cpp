#include "views/picture/block_shape.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/placement.hpp"
#include "embedded/block_diagram/window.hpp"
#include "embedded/drawing/icon_size.hpp"
#include "embedded/drawing/port_labels.hpp"
#include "embedded/drawing/short_text.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/picture/value_text.hpp"

#include <algorithm>
#include <cmath>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;
namespace drawing = embedded::drawing;

namespace {

constexpr double port_distance = 20;
constexpr double name_share = 0.9;
constexpr double value_share = 0.8;
constexpr std::size_t longest_name = 32;

double rounded_up(double length, double step) {
  return std::ceil(length / step) * step;
}

bool lies_across(const GTBlock& block) {
  return host::rotation(block) % 180 != 0;
}

layout::Direction direction(const host::PortPlace& place) {
  if (place.away_x != 0) return place.away_x < 0 ? layout::Direction::left : layout::Direction::right;
  return place.away_y < 0 ? layout::Direction::up : layout::Direction::down;
}

layout::Pin pin_of(const GTBlock& block, const gtPort& port, layout::Size size) {
  if (host::isIoPort(block)) {
    const bool right = points_right(block);
    return {{right ? size.width : 0, size.height / 2}, right ? layout::Direction::right : layout::Direction::left};
  }
  const GTBounds bounds{0, 0, static_cast<int>(size.width), static_cast<int>(size.height)};
  const host::PortPlace place = host::portPlace(block, bounds, port.isLeft(), port.index);
  return {{place.x, place.y}, direction(place)};
}

/// A window that shows nothing and keeps the width of the longest text.
class TextProbe final : public GTWindow {
 public:
  explicit TextProbe(drawing::TextMeasure& measure) : measure_(measure) {}

  double width() const { return width_; }
  void setTextAlignment(int, int) override {}
  int lineSpacing() override { return static_cast<int>(port_distance); }
  void moveTo(int, int) override {}
  void drawString(const ustring& text) override { width_ = std::max(width_, measure_(text).width); }
  void setForeground(const GTColor&) override {}
  void frameAndFill(const GTBlock&, const GTBounds&) override {}
  void drawImage(const GTBlock&, const cvArray_tag*, const GTBounds&, bool, int) override {}
  void drawPortLabel(const GTBlock&, const GTBounds&, bool, int, const ustring&) override {}

 private:
  drawing::TextMeasure& measure_;
  double width_ = 0;
};

int most_ports_of_a_side(const GTBlock& block) {
  return std::max(block.getGrNumLeftConnectionPorts(), block.getGrNumRightConnectionPorts());
}

/// The line breaks of a name are blanks.
ustring one_line(ustring text) {
  std::replace(text.begin(), text.end(), u'\n', u' ');
  return text;
}

bool has_pin(const layout::Box& box, layout::Direction away) {
  return std::any_of(box.pins.begin(), box.pins.end(), [away](const layout::Pin& pin) { return pin.away == away; });
}

/// As many rows as the fuller side has ports, or twice as many where that brings the ports of both sides to whole rows.
int height_in_ports(int left, int right) {
  const int most = std::max(left, right);
  const int least = std::max(1, std::min(left, right));
  return most % least != 0 && 2 * most % least == 0 ? 2 * most : most;
}

}  // namespace

bool points_right(const GTBlock& io_port) {
  return host::parameter(io_port, "Side") == u"Left";
}

double ShapeMaker::text_width(const GTBlock& block) {
  TextProbe probe(measure_);
  block.drawIcon(&probe, {0, 0, 100, 100});
  return probe.width();
}

layout::Size ShapeMaker::size_by_texts(const GTBlock& block) {
  double labels[2] = {0, 0};
  int counts[2] = {0, 0};
  for (const gtPort* port : host::ports(block)) {
    const int side = port->isLeft() ? 0 : 1;
    const ustring label = kmf::utf8_string_to_ustring(port_name(*port));
    labels[side] = std::max(labels[side], measure_(label, drawing::port_label_share).width);
    ++counts[side];
  }
  const int rows = height_in_ports(counts[0], counts[1]);
  if (lies_across(block) && host::isSubsystem(block)) {  // names of ports stand beside each other
    const double widest = std::max(labels[0], labels[1]) + drawing::port_label_distance;
    const double width = std::max(rows * rounded_up(widest, port_distance), text_width(block) + port_distance);
    return {std::max(2 * port_distance, rounded_up(width, port_distance)), 3 * port_distance};
  }
  const double width = labels[0] + labels[1] + text_width(block) + port_distance;
  const layout::Size size{std::max(3 * port_distance, rounded_up(width, port_distance)),
                          std::max(2 * port_distance, port_distance * rows)};
  return lies_across(block) ? layout::Size{size.height, size.width} : size;
}

layout::Size ShapeMaker::size_of(const GTBlock& block) {
  if (host::isIoPort(block)) {
    const ustring name = drawing::shortened(one_line(block.getGrName()), longest_name);
    return {rounded_up(measure_(name, name_share).width, port_distance) + port_distance, port_distance};
  }
  const auto natural = drawing::natural_size(block);
  if (!natural) return size_by_texts(block);
  layout::Size size = *natural;
  // An icon for any count of ports grows with it.
  size.height = std::max(size.height, port_distance * most_ports_of_a_side(block));
  return lies_across(block) ? layout::Size{size.height, size.width} : size;
}

void ShapeMaker::add_caption(BlockShape& shape, const ustring& text, bool beside, double share, bool faint) {
  if (text.empty()) return;
  layout::Box& box = shape.box;
  const drawing::Size size = measure_(text, share);
  double y = beside ? 0 : box.size.height + caption_distance;
  if (!box.texts.empty()) y = box.texts.back().y + box.texts.back().height;
  const double x = beside ? box.size.width + caption_distance : box.size.width / 2;
  box.texts.push_back({beside ? x : x - size.width / 2, y, size.width, size.height});
  shape.captions.push_back({text, {x, y}, beside ? GT_ALIGN_LEFT : GT_ALIGN_CENTER, GT_ALIGN_TOP, share, faint});
}

void ShapeMaker::add_captions(BlockShape& shape) {
  const GTBlock& block = *shape.block;
  const ustring name = drawing::shortened(one_line(block.getGrName()), longest_name);
  if (host::isIoPort(block)) {
    const double point = points_right(block) ? -3 : 3;
    const layout::Point middle{shape.box.size.width / 2 + point, shape.box.size.height / 2};
    const double room = shape.box.size.width - shape.box.size.height / 2;
    const auto width = [&](const ustring& text) { return measure_(text, name_share).width; };
    shape.captions.push_back(
        {drawing::fitted(name, room, width), middle, GT_ALIGN_CENTER, GT_ALIGN_MIDDLE, name_share, false});
    return;
  }
  const bool beside = has_pin(shape.box, layout::Direction::down);
  add_caption(shape, name, beside, name_share, false);
  add_caption(shape, one_line(value_text(block)), beside, value_share, true);
}

BlockShape ShapeMaker::make(const GTBlock& block) {
  BlockShape shape;
  shape.block = &block;
  layout::Box& box = shape.box;
  if (const auto place = host::position(block)) {
    box.fixed = true;
    box.corner = {static_cast<double>(place->left), static_cast<double>(place->top)};
    const layout::Size given{static_cast<double>(place->right) - place->left,
                             static_cast<double>(place->bottom) - place->top};
    box.size = given.width >= 1 && given.height >= 1 ? given : size_of(block);
  } else {
    box.size = size_of(block);
  }
  shape.ports = host::ports(block);
  for (const gtPort* port : shape.ports) box.pins.push_back(pin_of(block, *port, box.size));
  add_captions(shape);
  return shape;
}

layout::Size ShapeMaker::label_size(const ustring& text) {
  return measure_(text, stub_share);
}

layout::Size ShapeMaker::net_name_size(const ustring& text) {
  return measure_(text, net_name_share);
}

}  // namespace kinemo::views::picture
