#include "views/picture/net_labels.hpp"

#include "embedded/drawing/short_text.hpp"
#include "views/layout/geometry.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace kinemo::views::picture {

namespace {

using layout::Point;
using layout::Rectangle;
using layout::Size;

constexpr double gap = 2.5;  ///< between a line and the name above it
constexpr double side_gap = 4;
constexpr std::size_t most_segments = 4;
constexpr std::array shares{0.5, 0.2, 0.8};

/// A straight piece of a line from its left or upper end.
struct Segment {
  Point from;
  double length;
};

/// The longest ones in a direction, from the longest on.
std::vector<Segment> segments(const layout::Route& route, bool horizontal) {
  std::vector<Segment> found;
  for (const auto& line : route.lines) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const Rectangle room = layout::spanned(line[i - 1], line[i]);
      if ((horizontal ? room.height : room.width) != 0) continue;
      found.push_back({{room.x, room.y}, horizontal ? room.width : room.height});
    }
  }
  std::stable_sort(found.begin(), found.end(), [](const Segment& a, const Segment& b) { return a.length > b.length; });
  found.resize(std::min(found.size(), most_segments));
  return found;
}

class NetLabeller {
 public:
  NetLabeller(const LabelRoom& room, const layout::Route& route, const ustring& name, const MeasureLabel& measure)
      : room_(room),
        rows_(segments(route, true)),
        columns_(segments(route, false)),
        name_(name),
        size_(measure(name)),
        measure_(measure) {}

  boost::optional<NetLabel> place() {
    if (rows_.empty() && columns_.empty()) return boost::none;
    beside_rows(true);
    beside_rows(false);
    beside_columns();
    if (!found_) sticking_out();
    if (!found_) shorten();
    if (!found_) on_lines();
    return found_;
  }

 private:
  void consider(const Rectangle& place, const ustring& text, int most_lines = 0) {
    if (found_) return;
    const Covered covered = room_.covered(place);
    if (covered.solids == 0 && covered.lines <= most_lines) found_ = NetLabel{text, place};
  }

  void beside_rows(bool above) {
    for (const Segment& row : rows_) {
      const double spare = row.length - size_.width - 2 * side_gap;
      if (spare < 0) return;
      for (const double share : shares) consider(beside_row(row.from, side_gap + share * spare, size_, above), name_);
    }
  }

  static Rectangle beside_row(Point from, double along, const Size& size, bool above) {
    return {from.x + along, above ? from.y - size.height - gap : from.y + gap, size.width, size.height};
  }

  void beside_columns() {
    for (const Segment& column : columns_) {
      const double spare = column.length - size_.height - 2 * gap;
      if (spare < 0) return;
      for (const double share : shares) {
        const double y = column.from.y + gap + share * spare;
        consider({column.from.x + side_gap, y, size_.width, size_.height}, name_);
        consider({column.from.x - side_gap - size_.width, y, size_.width, size_.height}, name_);
      }
    }
  }

  /// Longer than the line.
  void sticking_out() {
    for (const Segment& row : rows_) {
      for (const bool above : {true, false})
        consider(beside_row(row.from, (row.length - size_.width) / 2, size_, above), name_);
    }
  }

  void shorten() {
    for (const Segment& row : rows_) {
      const ustring text = embedded::drawing::fitted(name_, row.length - 2 * side_gap,
                                                     [&](const ustring& it) { return measure_(it).width; });
      if (text.empty()) return;
      const Size size = measure_(text);
      for (const bool above : {true, false})
        consider(beside_row(row.from, (row.length - size.width) / 2, size, above), text);
    }
  }

  /// On a ground of its own, with as few lines under it as there are.
  void on_lines() {
    constexpr int most = 3;
    for (int lines = 1; lines <= most; ++lines) {
      for (const Segment& row : rows_) {
        if (row.length < size_.width + 2 * side_gap) break;
        consider(over({row.from.x + row.length / 2, row.from.y}), name_, lines);
      }
      for (const Segment& column : columns_) {
        if (column.length < size_.height + 2 * side_gap) break;
        for (const double share : shares) {
          const double y = column.from.y + size_.height / 2 + side_gap;
          consider(over({column.from.x, y + share * (column.length - size_.height - 2 * side_gap)}), name_, lines);
        }
      }
    }
  }

  Rectangle over(Point middle) const {
    return {middle.x - size_.width / 2, middle.y - size_.height / 2, size_.width, size_.height};
  }

  const LabelRoom& room_;
  std::vector<Segment> rows_;
  std::vector<Segment> columns_;
  const ustring& name_;
  Size size_;
  const MeasureLabel& measure_;
  boost::optional<NetLabel> found_;
};

}  // namespace

std::vector<boost::optional<NetLabel>> place_net_labels(LabelRoom& room, const layout::Drawing& drawing,
                                                        const std::vector<ustring>& names,
                                                        const MeasureLabel& measure) {
  std::vector<boost::optional<NetLabel>> labels(names.size());
  for (std::size_t net = 0; net < names.size(); ++net) {
    if (names[net].empty()) continue;
    labels[net] = NetLabeller(room, drawing.routes[net], names[net], measure).place();
    if (labels[net]) room.add_text(labels[net]->place);
  }
  return labels;
}

}  // namespace kinemo::views::picture
