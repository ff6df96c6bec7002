#include "views/picture/caption_places.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/drawing/short_text.hpp"
#include "views/layout/scene.hpp"

#include <algorithm>
#include <array>
#include <limits>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;

namespace {

using layout::Direction;
using layout::Point;
using layout::Rectangle;

constexpr double clearance = 2;      ///< of captions from each other and from lines
constexpr double lead_length = 10;   ///< at a pin, kept free for its line
constexpr double least_share = 0.6;  ///< of a name's width that is left where it is shortened instead of moved

/// Where captions begin, relative to the corner of their block; `y` is the top of the first or the bottom of the last.
struct Anchor {
  double x;
  double y;
  int horizontal;
  bool upward = false;
};

std::vector<double> pins_toward(const layout::Box& box, Direction away) {
  std::vector<double> places;
  for (const layout::Pin& pin : box.pins) {
    if (pin.away == away) places.push_back(pin.at.x);
  }
  return places;
}

/// Beside the lines that leave the upper or the lower edge.
void add_beside_leads(const layout::Box& box, Direction away, std::vector<Anchor>& anchors) {
  const std::vector<double> pins = pins_toward(box, away);
  if (pins.empty()) return;
  const double edge = away == Direction::down ? box.size.height + clearance : -clearance;
  const double right = *std::max_element(pins.begin(), pins.end()) + caption_distance;
  const double left = *std::min_element(pins.begin(), pins.end()) - caption_distance;
  anchors.push_back({right, edge, GT_ALIGN_LEFT, away == Direction::up});
  anchors.push_back({left, edge, GT_ALIGN_RIGHT, away == Direction::up});
}

/// The best first.
std::vector<Anchor> anchors_of(const layout::Box& box) {
  const layout::Size size = box.size;
  const Anchor right{size.width + caption_distance, 0, GT_ALIGN_LEFT};
  const Anchor left{-caption_distance, 0, GT_ALIGN_RIGHT};
  const Anchor below{size.width / 2, size.height + caption_distance, GT_ALIGN_CENTER};
  const Anchor above{size.width / 2, -caption_distance, GT_ALIGN_CENTER, true};
  if (pins_toward(box, Direction::down).empty()) return {below, above, right, left};
  std::vector<Anchor> anchors{right, left, above};
  add_beside_leads(box, Direction::down, anchors);
  add_beside_leads(box, Direction::up, anchors);
  return anchors;
}

Rectangle lead(const layout::Box& box, const layout::Pin& pin) {
  const Point from{box.corner.x + pin.at.x, box.corner.y + pin.at.y};
  return layout::grown(layout::spanned(from, layout::moved(from, pin.away, lead_length)), 1);
}

bool overlap(const std::vector<Rectangle>& rows, const Rectangle& thing) {
  return std::any_of(rows.begin(), rows.end(), [&](const Rectangle& row) {
    return layout::overlap({row.x - clearance, row.y, row.width + 2 * clearance, row.height}, thing);
  });
}

/// Where the text breaks into two lines of about equal length; its size for one without such a place.
std::size_t break_of(const ustring& text) {
  const auto breaks_after = [](char16_t letter) { return ustring(u" _-./:").find(letter) != ustring::npos; };
  std::size_t best = text.size();
  const auto distance = [&](std::size_t at) { return std::max(at, text.size() - at); };
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (breaks_after(text[i - 1]) && distance(i) < distance(best)) best = i;
  }
  return best;
}

class CaptionPlacer {
 public:
  CaptionPlacer(std::vector<BlockShape>& shapes, ShapeMaker& maker) : shapes_(shapes), maker_(maker) {}

  void run() {
    for (const BlockShape& shape : shapes_) {
      if (shape.box.fixed) add_obstacles(shape.box);
    }
    for (std::size_t i = 0; i < shapes_.size(); ++i) {
      if (has_captions(shapes_[i])) add_wish(i);
    }
    for (std::size_t i = 0; i < shapes_.size(); ++i) {
      if (has_captions(shapes_[i])) place(i);
    }
  }

 private:
  static bool has_captions(const BlockShape& shape) {
    return shape.box.fixed && !shape.captions.empty() && !host::isIoPort(*shape.block);
  }

  void add_obstacles(const layout::Box& box) {
    obstacles_.add({layout::Kind::box, layout::outline(box)});
    for (const layout::Pin& pin : box.pins) obstacles_.add({layout::Kind::leg, lead(box, pin)});
  }

  /// What the best place would take, where nothing of the block itself is in the way.
  void add_wish(std::size_t i) {
    const layout::Box& box = shapes_[i].box;
    const std::vector<Anchor> anchors = anchors_of(box);
    const auto clear = [&](const Anchor& anchor) {
      const std::vector<Rectangle> rows = rows_of(box, shapes_[i].captions, anchor);
      return std::none_of(box.pins.begin(), box.pins.end(),
                          [&](const layout::Pin& pin) { return overlap(rows, lead(box, pin)); });
    };
    const auto best = std::find_if(anchors.begin(), anchors.end(), clear);
    for (const Rectangle& row : rows_of(box, shapes_[i].captions, best == anchors.end() ? anchors[0] : *best)) {
      wishes_.add({layout::Kind::text, row, i});
      ++wish_count_;
    }
  }

  std::vector<Rectangle> rows_of(const layout::Box& box, const std::vector<Caption>& captions,
                                 const Anchor& anchor) const {
    std::vector<Rectangle> rows;
    double y = box.corner.y + anchor.y;
    for (const Caption& caption : captions) {
      const layout::Size size = maker_.text_size(caption.text, caption.share);
      const double share = anchor.horizontal == GT_ALIGN_LEFT ? 0 : anchor.horizontal == GT_ALIGN_CENTER ? 0.5 : 1;
      rows.push_back({box.corner.x + anchor.x - share * size.width, y, size.width, size.height});
      y += size.height;
    }
    for (Rectangle& row : rows) row.y -= anchor.upward ? y - box.corner.y - anchor.y : 0;
    return rows;
  }

  void place(std::size_t i) {
    BlockShape& shape = shapes_[i];
    const std::vector<Anchor> anchors = anchors_of(shape.box);
    if (take_free(i, shape.captions, {anchors[0]})) return;
    if (take_free(i, broken(shape.captions), {anchors[0]})) return;
    if (take_shortened(i, {anchors[0]}, least_share)) return;
    if (take_free(i, shape.captions, anchors)) return;
    if (take_shortened(i, anchors, least_share)) return;
    if (take_shortened(i, anchors, 0)) return;
    take(i, shape.captions, anchors[0]);
  }

  static std::vector<Caption> broken(std::vector<Caption> captions) {
    Caption& first = captions.front();
    const std::size_t at = break_of(first.text);
    if (at == first.text.size()) return captions;
    Caption second = first;
    second.text = first.text.substr(at);
    first.text.resize(first.text[at - 1] == u' ' ? at - 1 : at);
    captions.insert(captions.begin() + 1, second);
    return captions;
  }

  bool take_free(std::size_t i, const std::vector<Caption>& captions, const std::vector<Anchor>& anchors) {
    for (const Anchor& anchor : anchors) {
      if (!is_free(i, rows_of(shapes_[i].box, captions, anchor))) continue;
      take(i, captions, anchor);
      return true;
    }
    return false;
  }

  bool is_free(std::size_t i, const std::vector<Rectangle>& rows) const {
    const auto meets = [&](const layout::Scene& scene, const Rectangle& row) {
      const std::vector<std::size_t> near = scene.near(layout::grown(row, clearance));
      return std::any_of(near.begin(), near.end(),
                         [&](std::size_t it) { return scene[it].net != i && overlap({row}, scene[it].room); });
    };
    return std::none_of(rows.begin(), rows.end(),
                        [&](const Rectangle& row) { return meets(obstacles_, row) || meets(wishes_, row); });
  }

  bool take_shortened(std::size_t i, const std::vector<Anchor>& anchors, double least) {
    for (const Anchor& anchor : anchors) {
      std::vector<Caption> captions = shapes_[i].captions;
      const std::vector<Rectangle> rows = rows_of(shapes_[i].box, captions, anchor);
      const double room = room_of(i, rows, anchor);
      if (room < least * rows.front().width) continue;
      for (Caption& caption : captions) shorten(caption, room);
      std::erase_if(captions, [](const Caption& caption) { return caption.text.empty(); });
      if (captions.empty() || captions.front().faint) continue;
      take(i, captions, anchor);
      return true;
    }
    return false;
  }

  /// Values would be others.
  void shorten(Caption& caption, double room) const {
    const auto width = [&](const ustring& text) { return maker_.text_size(text, caption.share).width; };
    if (!caption.faint) {
      caption.text = embedded::drawing::fitted(caption.text, room, width);
    } else if (width(caption.text) > room) {
      caption.text.clear();
    }
  }

  /// How wide rows at the anchor may be.
  double room_of(std::size_t i, const std::vector<Rectangle>& rows, const Anchor& anchor) const {
    const double x = shapes_[i].box.corner.x + anchor.x;
    double before = std::numeric_limits<double>::infinity();
    double behind = before;
    const auto limit = [&](double left, double right) {
      if (right <= x) before = std::min(before, x - right - clearance);
      if (left >= x) behind = std::min(behind, left - x - clearance);
      if (left < x && x < right) before = behind = 0;
    };
    for (const Rectangle& row : rows) {
      for (const std::size_t it : obstacles_.near(layout::grown(row, clearance))) {
        const Rectangle& room = obstacles_[it].room;
        if (overlap({row}, room)) limit(room.x, layout::right(room));
      }
      for (const std::size_t it : wishes_.near(layout::grown(row, clearance))) {
        if (wishes_[it].net != i && overlap({row}, wishes_[it].room)) share_gap(i, wishes_[it], limit);
      }
    }
    if (anchor.horizontal == GT_ALIGN_LEFT) return behind;
    return anchor.horizontal == GT_ALIGN_RIGHT ? before : 2 * std::min(before, behind);
  }

  /// Of two blocks beside each other, each has half of what is between them.
  template <class Limit>
  void share_gap(std::size_t i, const layout::Thing& wish, const Limit& limit) const {
    const Rectangle own = layout::outline(shapes_[i].box);
    const Rectangle other = layout::outline(shapes_[wish.net].box);
    if (other.x >= layout::right(own)) {
      limit((other.x + layout::right(own)) / 2, layout::right(other));
    } else if (layout::right(other) <= own.x) {
      limit(other.x, (layout::right(other) + own.x) / 2);
    } else {
      limit(wish.room.x, layout::right(wish.room));
    }
  }

  void take(std::size_t i, std::vector<Caption> captions, const Anchor& anchor) {
    BlockShape& shape = shapes_[i];
    const Point corner = shape.box.corner;
    shape.box.texts.clear();
    const std::vector<Rectangle> rows = rows_of(shape.box, captions, anchor);
    for (std::size_t k = 0; k < rows.size(); ++k) {
      obstacles_.add({layout::Kind::text, rows[k]});
      captions[k].at = {anchor.x, rows[k].y - corner.y};
      captions[k].horizontal = anchor.horizontal;
      shape.box.texts.push_back(layout::moved(rows[k], {-corner.x, -corner.y}));
    }
    shape.captions = std::move(captions);
    forget_wish(i);
  }

  void forget_wish(std::size_t i) {
    for (; next_wish_ < wish_count_ && wishes_[next_wish_].net == i; ++next_wish_) wishes_.remove(next_wish_);
  }

  std::vector<BlockShape>& shapes_;
  ShapeMaker& maker_;
  layout::Scene obstacles_;  ///< blocks, the beginnings of their lines, and captions that have their places
  layout::Scene wishes_;     ///< of captions that haven't; `net` is the shape
  std::size_t wish_count_ = 0;
  std::size_t next_wish_ = 0;
};

}  // namespace

void place_captions(std::vector<BlockShape>& shapes, ShapeMaker& maker) {
  CaptionPlacer(shapes, maker).run();
}

}  // namespace kinemo::views::picture
