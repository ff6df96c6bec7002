#include "views/layout/columns.hpp"

#include <algorithm>
#include <cmath>
#include <map>

namespace kinemo::views::layout {

namespace {

class Columns {
 public:
  Columns(const Problem& problem, const std::vector<Rectangle>& footprints, const Part& part,
          const std::vector<Cell>& cells)
      : problem_(problem), footprints_(footprints), part_(part), cells_(cells), corners_(cells.size()) {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (cells[i].column >= columns_.size()) columns_.resize(cells[i].column + 1);
      columns_[cells[i].column].push_back(i);
    }
  }

  std::vector<Point> run() {
    for (auto& column : columns_) set_heights(column);
    find_partners();
    for (std::size_t i = 0; i < columns_.size(); ++i) straighten(columns_[i]);
    for (std::size_t i = columns_.size(); i-- > 0;) straighten(columns_[i]);
    set_widths();
    fold();
    return corners_;
  }

 private:
  const Rectangle& footprint(std::size_t box) const { return footprints_[part_.boxes[box]]; }
  const Box& box(std::size_t it) const { return problem_.boxes[part_.boxes[it]]; }

  void set_heights(std::vector<std::size_t>& column) {
    std::stable_sort(column.begin(), column.end(),
                     [&](std::size_t a, std::size_t b) { return cells_[a].top < cells_[b].top; });
    double free = 0;
    for (std::size_t i : column) {
      double y = snapped(cells_[i].top - footprint(i).y);
      if (i != column.front()) y = std::max(y, std::ceil((free - footprint(i).y) / grid_step) * grid_step);
      corners_[i].y = y;
      free = y + bottom(footprint(i)) + grid_step;
    }
  }

  /// A pin of a box and one that it looks at, in a net of few pins.
  struct Partner {
    std::size_t box = 0;
    double difference = 0;  ///< of the heights of the two pins within their boxes
  };

  void find_partners() {
    constexpr std::size_t few = 4;
    partners_.resize(corners_.size());
    for (const auto& net : part_.nets) {
      if (net.size() > few) continue;
      for (PinRef a : net) {
        for (PinRef b : net) add_partner(a, b);
      }
    }
  }

  void add_partner(PinRef a, PinRef b) {
    const Pin& pin = box(a.box).pins[a.pin];
    const Pin& other = box(b.box).pins[b.pin];
    if (cells_[a.box].column >= cells_[b.box].column) return;
    if (pin.away != Direction::right || other.away != Direction::left) return;
    partners_[a.box].push_back({b.box, other.at.y - pin.at.y});
    partners_[b.box].push_back({a.box, pin.at.y - other.at.y});
  }

  double off(std::size_t i, const Partner& it) const { return corners_[it.box].y + it.difference - corners_[i].y; }

  /// Small steps between boxes that look at each other vanish, where a box can move and no line of it is straight yet.
  void straighten(const std::vector<std::size_t>& column) {
    constexpr double small = 40;
    for (std::size_t place = 0; place < column.size(); ++place) {
      const std::size_t i = column[place];
      double best = small;
      for (const Partner& it : partners_[i]) {
        if (std::abs(off(i, it)) < std::abs(best)) best = off(i, it);
      }
      const double by = snapped(best);
      if (best == small || by == 0) continue;
      const double upper = place == 0 ? -1e9 : end_of(column[place - 1]);
      const double lower =
          place + 1 == column.size() ? 1e9 : corners_[column[place + 1]].y + footprint(column[place + 1]).y;
      const double top = corners_[i].y + by + footprint(i).y;
      if (top >= upper + grid_step && top + footprint(i).height + grid_step <= lower) corners_[i].y += by;
    }
  }

  double end_of(std::size_t i) const { return corners_[i].y + bottom(footprint(i)); }

  void set_widths() {
    const std::vector<std::size_t> lines = lines_between_columns();
    double x = 0;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (i > 0) x += std::max(column_distance, static_cast<double>(lines[i] + 1) * grid_step);
      x = set_column(columns_[i], x);
    }
  }

  /// The boxes' middles stand above each other. Returns where the column ends.
  double set_column(const std::vector<std::size_t>& column, double x) {
    double before = 0;
    double after = 0;
    for (std::size_t i : column) {
      corners_[i].x = -snapped(box(i).size.width / 2);
      before = std::max(before, -corners_[i].x - footprint(i).x);
      after = std::max(after, corners_[i].x + right(footprint(i)));
    }
    const double middle = std::ceil((x + before) / grid_step) * grid_step;
    for (std::size_t i : column) corners_[i].x += middle;
    return std::ceil((middle + after) / grid_step) * grid_step;
  }

  Rectangle room(std::size_t begin, std::size_t end) const {
    Rectangle all = moved(footprint(columns_[begin].front()), corners_[columns_[begin].front()]);
    for (std::size_t column = begin; column < end; ++column) {
      for (std::size_t i : columns_[column]) all = united(all, moved(footprint(i), corners_[i]));
    }
    return all;
  }

  /// Rows of so many columns each that the whole is no strip any more. A row may be lower than the strip, where its
  /// lines climb from end to end, so that a few row lengths are tried.
  void fold() {
    const Rectangle strip = room(0, columns_.size());
    if (columns_.size() < least_columns_to_fold || strip.width < least_width_to_fold) return;
    for (std::size_t rows = 1; rows < columns_.size() / 4; ++rows) {
      const std::size_t length = (columns_.size() + rows - 1) / rows;
      double width = 0;
      double height = 0;
      for (std::size_t i = 0; i < columns_.size(); i += length) {
        const Rectangle row = room(i, std::min(i + length, columns_.size()));
        width = std::max(width, row.width);
        height += row.height + row_distance;
      }
      if (width > height * widest_ratio) continue;
      if (rows > 1) fold_into_rows(length);
      return;
    }
  }

  void fold_into_rows(std::size_t length) {
    double y = 0;
    for (std::size_t begin = 0; begin < columns_.size(); begin += length) {
      const std::size_t end = std::min(begin + length, columns_.size());
      const Rectangle row = room(begin, end);
      const Point by{snapped(-row.x), std::ceil((y - row.y) / grid_step) * grid_step};
      for (std::size_t column = begin; column < end; ++column) {
        for (std::size_t i : columns_[column]) corners_[i] = {corners_[i].x + by.x, corners_[i].y + by.y};
      }
      y = row.y + by.y + row.height + row_distance;
    }
  }

  static constexpr std::size_t least_columns_to_fold = 16;
  static constexpr double least_width_to_fold = 2500;
  static constexpr double widest_ratio = 2.5;
  static constexpr double row_distance = 60;

  /// By channel (the one before the first column is 0): how many vertical lines it must hold side by side.
  std::vector<std::size_t> lines_between_columns() const {
    std::vector<std::vector<std::pair<double, int>>> ends(columns_.size() + 1);
    for (const auto& net : part_.nets) add_ends(net, ends);
    std::vector<std::size_t> result;
    for (auto& channel : ends) result.push_back(most_at_once(channel));
    return result;
  }

  void add_ends(const std::vector<PinRef>& net, std::vector<std::vector<std::pair<double, int>>>& ends) const {
    std::map<std::size_t, std::pair<double, double>> spans;
    std::vector<double> heights;
    for (PinRef it : net) {
      const Pin& pin = box(it.box).pins[it.pin];
      const double y = corners_[it.box].y + pin.at.y;
      const std::size_t channel = cells_[it.box].column + (pin.away == Direction::right ? 1 : 0);
      const auto span = spans.try_emplace(channel, y, y).first;
      span->second = {std::min(span->second.first, y), std::max(span->second.second, y)};
      heights.push_back(y);
    }
    std::nth_element(heights.begin(), heights.begin() + static_cast<std::ptrdiff_t>(heights.size() / 2), heights.end());
    const double trunk = heights[heights.size() / 2];
    for (auto& [channel, span] : spans) {
      if (spans.size() > 1) span = {std::min(span.first, trunk), std::max(span.second, trunk)};
      if (span.first == span.second) continue;
      ends[channel].emplace_back(span.first, -1);
      ends[channel].emplace_back(span.second, 1);
    }
  }

  static std::size_t most_at_once(std::vector<std::pair<double, int>>& ends) {
    std::sort(ends.begin(), ends.end());
    int now = 0;
    int most = 0;
    for (const auto& [y, end] : ends) {
      now -= end;
      most = std::max(most, now);
    }
    return static_cast<std::size_t>(most);
  }

  const Problem& problem_;
  const std::vector<Rectangle>& footprints_;
  const Part& part_;
  const std::vector<Cell>& cells_;
  std::vector<std::vector<std::size_t>> columns_;
  std::vector<Point> corners_;
  std::vector<std::vector<Partner>> partners_;  ///< by box
};

}  // namespace

std::vector<Point> corners_in_columns(const Problem& problem, const std::vector<Rectangle>& footprints,
                                      const Part& part, const std::vector<Cell>& cells) {
  return Columns(problem, footprints, part, cells).run();
}

}  // namespace kinemo::views::layout
