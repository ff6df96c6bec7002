#include <algorithm>
#include <cmath>
#include <deque>
#include <numeric>

#include "views/layout/layers.hpp"

namespace kinemo::views::layout {

namespace {

constexpr double page_ratio = 4.0 / 3;
constexpr double row_distance = 30;

/// Cells of the grid, and the boxes that will stand in them.
struct Region {
  std::size_t column = 0;
  std::size_t row = 0;
  std::size_t width = 1;
  std::size_t height = 1;
  std::vector<std::size_t> boxes;
};

class Bisection {
 public:
  Bisection(const Part& part, std::size_t columns, std::size_t rows)
      : part_(part),
        nets_of_(part.boxes.size()),
        place_(part.boxes.size()),
        region_(part.boxes.size()),
        seen_(part.boxes.size()),
        net_seen_(part.nets.size()) {
    for (std::size_t net = 0; net < part.nets.size(); ++net) {
      for (PinRef it : part.nets[net]) nets_of_[it.box].push_back(net);
    }
    Region all{0, 0, columns, rows, std::vector<std::size_t>(part.boxes.size())};
    std::iota(all.boxes.begin(), all.boxes.end(), std::size_t{0});
    regions_.push_back(std::move(all));
  }

  /// Column and row by box.
  const std::vector<Point>& run() {
    while (!regions_.empty()) {
      Region region = std::move(regions_.front());
      regions_.pop_front();
      if (region.boxes.size() > 1) split(std::move(region));
    }
    return place_;
  }

 private:
  void split(Region region) {
    ++mark_;
    for (std::size_t box : region.boxes) region_[box] = mark_;
    const std::vector<std::size_t> order = by_nearness(region.boxes);
    const bool across = region.width * page_ratio >= region.height && region.width > 1;
    const std::size_t length = across ? region.width : region.height;
    const std::size_t breadth = across ? region.height : region.width;
    const std::size_t cut = length / 2;
    const std::size_t least = order.size() - std::min(order.size(), (length - cut) * breadth);
    const std::size_t count = std::clamp(order.size() * cut / length, least, cut * breadth);
    std::vector<std::size_t> first(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(count));
    std::vector<std::size_t> second(order.begin() + static_cast<std::ptrdiff_t>(count), order.end());
    if (first.size() == second.size() && pull(first, across) > pull(second, across)) first.swap(second);
    Region low = region;
    Region high = region;
    (across ? low.width : low.height) = cut;
    (across ? high.width : high.height) = length - cut;
    (across ? high.column : high.row) += cut;
    low.boxes = std::move(first);
    high.boxes = std::move(second);
    enter(std::move(low));
    enter(std::move(high));
  }

  void enter(Region region) {
    const Point middle{static_cast<double>(region.column) + static_cast<double>(region.width - 1) / 2,
                       static_cast<double>(region.row) + static_cast<double>(region.height - 1) / 2};
    for (std::size_t box : region.boxes) place_[box] = middle;
    regions_.push_back(std::move(region));
  }

  /// The mean place of what the boxes are joined to outside of their region.
  double pull(const std::vector<std::size_t>& boxes, bool across) const {
    double sum = 0;
    std::size_t count = 0;
    for (std::size_t box : boxes) {
      for (std::size_t net : nets_of_[box]) {
        for (PinRef it : part_.nets[net]) {
          if (region_[it.box] == region_[box]) continue;
          sum += across ? place_[it.box].x : place_[it.box].y;
          ++count;
        }
      }
    }
    return count ? sum / static_cast<double>(count) : 0;
  }

  /// From one end of the region to the other, along its nets.
  std::vector<std::size_t> by_nearness(const std::vector<std::size_t>& boxes) {
    const std::size_t far = walk(boxes, boxes.front()).back();
    return walk(boxes, far);
  }

  std::vector<std::size_t> walk(const std::vector<std::size_t>& boxes, std::size_t start) {
    ++walk_;
    std::vector<std::size_t> order;
    std::size_t next = 0;
    const auto reach = [&](std::size_t box) {
      if (region_[box] != mark_ || seen_[box] == walk_) return;
      seen_[box] = walk_;
      order.push_back(box);
    };
    const auto spread = [&] {
      for (; next < order.size(); ++next) {
        for (std::size_t net : nets_of_[order[next]]) {
          if (net_seen_[net] == walk_) continue;
          net_seen_[net] = walk_;
          for (PinRef it : part_.nets[net]) reach(it.box);
        }
      }
    };
    reach(start);
    spread();
    for (std::size_t box : boxes) {
      reach(box);
      spread();
    }
    return order;
  }

  const Part& part_;
  std::vector<std::vector<std::size_t>> nets_of_;
  std::vector<Point> place_;
  std::vector<std::size_t> region_;  ///< by box: the last region that was split
  std::vector<std::size_t> seen_;
  std::vector<std::size_t> net_seen_;
  std::size_t mark_ = 0;
  std::size_t walk_ = 0;
  std::deque<Region> regions_;
};

std::size_t columns_of_page(const std::vector<Rectangle>& footprints, const Part& part) {
  double width = 1;
  double height = 1;
  for (std::size_t box : part.boxes) {
    width += footprints[box].width + row_distance;
    height += footprints[box].height + row_distance;
  }
  const double count = static_cast<double>(part.boxes.size());
  return static_cast<std::size_t>(std::clamp(std::round(std::sqrt(count * page_ratio * height / width)), 1.0, count));
}

}  // namespace

std::vector<Cell> grid_cells(const std::vector<Rectangle>& footprints, const Part& part) {
  const std::size_t columns = columns_of_page(footprints, part);
  const std::size_t rows = (part.boxes.size() + columns - 1) / columns;
  Bisection bisection(part, columns, rows);
  const std::vector<Point>& places = bisection.run();
  std::vector<double> tops(rows + 1);
  for (std::size_t i = 0; i < places.size(); ++i) {
    double& height = tops[static_cast<std::size_t>(places[i].y) + 1];
    height = std::max(height, footprints[part.boxes[i]].height + row_distance);
  }
  std::partial_sum(tops.begin(), tops.end(), tops.begin());
  std::vector<Cell> cells;
  for (const Point& it : places)
    cells.push_back({static_cast<std::size_t>(it.x), tops[static_cast<std::size_t>(it.y)]});
  return cells;
}

}  // namespace kinemo::views::layout
