#include "views/layout/edge_boxes.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kinemo::views::layout {

namespace {

class EdgeColumns {
 public:
  EdgeColumns(Problem& problem, const std::vector<Rectangle>& footprints, std::vector<bool> has_height)
      : problem_(problem), footprints_(footprints), has_height_(std::move(has_height)) {
    bool any = false;
    placed_.resize(problem.boxes.size());
    for (std::size_t i = 0; i < problem.boxes.size(); ++i) {
      placed_[i] = !goes_to_edge(problem.boxes[i]);
      if (!placed_[i]) continue;
      const Rectangle room = moved(footprints[i], problem.boxes[i].corner);
      inner_ = any ? united(inner_, room) : room;
      any = true;
    }
  }

  void place(Edge edge, double gap) {
    std::vector<std::size_t> column;
    for (std::size_t i = 0; i < problem_.boxes.size(); ++i) {
      if (!placed_[i] && problem_.boxes[i].edge == edge) column.push_back(i);
    }
    take_heights_of_nets();
    set_heights(column);
    edge == Edge::left ? set_left(column, gap) : set_right(column, gap);
    for (std::size_t i : column) placed_[i] = true;
  }

 private:
  /// A box takes the height of the first pin on its net that has a place.
  void take_heights_of_nets() {
    const StubRule stubs(problem_);
    for (const Net& net : problem_.nets) {
      if (stubs(net)) continue;
      const auto partner = std::find_if(net.pins.begin(), net.pins.end(), [&](PinRef it) { return placed_[it.box]; });
      if (partner == net.pins.end()) continue;
      const double y = place_of(problem_, *partner).y;
      for (PinRef it : net.pins) {
        if (placed_[it.box] || has_height_[it.box]) continue;
        problem_.boxes[it.box].corner.y = snapped(y - pin_of(problem_, it).at.y);
        has_height_[it.box] = true;
      }
    }
  }

  void set_heights(std::vector<std::size_t>& column) {
    const auto height = [&](std::size_t i) {
      return has_height_[i] ? problem_.boxes[i].corner.y : std::numeric_limits<double>::infinity();
    };
    std::stable_sort(column.begin(), column.end(), [&](std::size_t a, std::size_t b) { return height(a) < height(b); });
    double free = inner_.y;
    for (std::size_t i : column) {
      double& y = problem_.boxes[i].corner.y;
      const double least = std::ceil((free - footprints_[i].y) / grid_step) * grid_step;
      y = has_height_[i] && (i == column.front() || y > least) ? y : least;
      has_height_[i] = true;
      free = y + bottom(footprints_[i]) + grid_step;
    }
  }

  /// The boxes' inner edges stand above each other.
  void set_left(const std::vector<std::size_t>& column, double gap) {
    double after = 0;
    for (std::size_t i : column) after = std::max(after, right(footprints_[i]) - problem_.boxes[i].size.width);
    for (std::size_t i : column) {
      Box& box = problem_.boxes[i];
      box.corner.x = std::floor((inner_.x - gap - after - box.size.width) / grid_step) * grid_step;
    }
  }

  void set_right(const std::vector<std::size_t>& column, double gap) {
    double before = 0;
    for (std::size_t i : column) before = std::max(before, -footprints_[i].x);
    for (std::size_t i : column) {
      problem_.boxes[i].corner.x = std::ceil((right(inner_) + gap + before) / grid_step) * grid_step;
    }
  }

  Problem& problem_;
  const std::vector<Rectangle>& footprints_;
  std::vector<bool> has_height_;
  std::vector<bool> placed_;
  Rectangle inner_;  ///< of all that has its place
};

}  // namespace

bool goes_to_edge(const Box& box) {
  return box.edge != Edge::none && !box.fixed;
}

bool is_of_edges(const Problem& problem, const Part& part) {
  return std::all_of(part.boxes.begin(), part.boxes.end(),
                     [&](std::size_t it) { return goes_to_edge(problem.boxes[it]); });
}

void move_to_edges(Problem& problem, const std::vector<Rectangle>& footprints, std::vector<bool> has_height,
                   EdgeGaps gaps) {
  EdgeColumns columns(problem, footprints, std::move(has_height));
  columns.place(Edge::left, gaps.left);
  columns.place(Edge::right, gaps.right);
}

}  // namespace kinemo::views::layout
