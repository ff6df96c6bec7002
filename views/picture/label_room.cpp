#include "views/picture/label_room.hpp"

#include "views/layout/geometry.hpp"

namespace kinemo::views::picture {

namespace {

using layout::Kind;
using layout::Rectangle;

constexpr double half_line = 0.75;
constexpr double clearance = 2;

bool is_line(Kind kind) {
  return kind == Kind::line || kind == Kind::stub;
}

/// The letters of a text don't reach the upper and lower edge of its room.
Rectangle widened(const Rectangle& label) {
  const double side = clearance + half_line;
  return {label.x - side, label.y - half_line, label.width + 2 * side, label.height + 2 * half_line};
}

bool along_each_other(const Rectangle& a, const Rectangle& b) {
  const bool same_row = a.height == 0 && b.height == 0 && a.y == b.y;
  const bool same_column = a.width == 0 && b.width == 0 && a.x == b.x;
  return (same_row && a.x < layout::right(b) && b.x < layout::right(a)) ||
         (same_column && a.y < layout::bottom(b) && b.y < layout::bottom(a));
}

bool touch(const Rectangle& line, const Rectangle& it) {
  return line.x <= layout::right(it) && it.x <= layout::right(line) && line.y <= layout::bottom(it) &&
         it.y <= layout::bottom(line);
}

}  // namespace

LabelRoom::LabelRoom(const std::vector<layout::Box>& boxes, const layout::Drawing& drawing)
    : stubs_(drawing.routes.size()) {
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    const layout::Point& corner = drawing.corners[i];
    scene_.add({Kind::box, {corner.x, corner.y, boxes[i].size.width, boxes[i].size.height}});
    for (const Rectangle& text : boxes[i].texts) add_text(layout::moved(text, corner));
  }
  for (std::size_t net = 0; net < drawing.routes.size(); ++net) {
    for (const auto& line : drawing.routes[net].lines) {
      for (std::size_t i = 1; i < line.size(); ++i)
        scene_.add({Kind::line, layout::spanned(line[i - 1], line[i]), net});
    }
    const auto& stubs = drawing.routes[net].stubs;
    for (std::size_t i = 0; i < stubs.size(); ++i) add_stub(net, i, stubs[i]);
  }
}

Covered LabelRoom::covered(const Rectangle& label) const {
  Covered result;
  const Rectangle wide = widened(label);
  const Rectangle between{label.x - clearance, label.y, label.width + 2 * clearance, label.height};
  for (const std::size_t thing : scene_.near(wide)) {
    const layout::Thing& it = scene_[thing];
    if (is_line(it.kind)) {
      result.lines += touch(it.room, wide) ? 1 : 0;
    } else {
      result.solids += layout::overlap(it.room, between) ? 1 : 0;
    }
  }
  return result;
}

int LabelRoom::obstacles(layout::Point from, layout::Point to) const {
  int result = 0;
  const Rectangle line = layout::spanned(from, to);
  const Rectangle room = layout::grown(line, half_line);
  for (const std::size_t thing : scene_.near(room)) {
    const layout::Thing& it = scene_[thing];
    const bool hit = is_line(it.kind) ? along_each_other(it.room, line) : layout::overlap(it.room, room);
    result += hit ? 1 : 0;
  }
  return result;
}

void LabelRoom::add_text(const Rectangle& place) {
  scene_.add({Kind::text, place});
}

void LabelRoom::add_stub(std::size_t net, std::size_t stub, const layout::Stub& drawn) {
  if (stubs_[net].size() <= stub) stubs_[net].resize(stub + 1);
  stubs_[net][stub] = {scene_.add({Kind::stub, layout::spanned(drawn.from, drawn.end), net}),
                       scene_.add({Kind::text, drawn.label, net})};
}

void LabelRoom::remove_stub(std::size_t net, std::size_t stub) {
  scene_.remove(stubs_[net][stub].line);
  scene_.remove(stubs_[net][stub].label);
}

}  // namespace kinemo::views::picture
