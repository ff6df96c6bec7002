#include <algorithm>
#include <map>

#include "views/layout/dot_engine.hpp"
#include "views/layout/layers.hpp"

namespace kinemo::views::layout {

namespace {

/// Room between boxes of one column for a line and air on both sides.
constexpr double box_distance = 20;

class DotGraph {
 public:
  DotGraph(const Problem& problem, const std::vector<Rectangle>& footprints, const Part& part)
      : problem_(problem), footprints_(footprints), part_(part) {
    for (std::size_t box : part.boxes) add_box(problem.boxes[box], footprints[box]);
    for (const auto& net : part.nets) add_net(net);
  }

  const std::vector<DotNode>& nodes() const { return nodes_; }
  const std::vector<DotEdge>& edges() const { return edges_; }

 private:
  void add_box(const Box& box, const Rectangle& footprint) {
    DotNode& node = nodes_.emplace_back();
    node.width = footprint.width;
    node.height = std::max(footprint.height, 1.0);
    for (const Pin& pin : box.pins) node.ports.push_back(std::clamp(pin.at.y - footprint.y, 0.0, node.height));
  }

  bool is_source(PinRef pin) const {
    return problem_.boxes[part_.boxes[pin.box]].pins[pin.pin].away == Direction::right;
  }
  static DotEnd end(PinRef pin) { return {pin.box, pin.pin}; }

  /// Two pins that look at each other are joined directly, others by a hub between them: so pins of the same side come
  /// into the same column.
  void add_net(const std::vector<PinRef>& pins) {
    if (pins.size() == 2) {
      if (pins[0].box == pins[1].box) return;
      if (is_source(pins[0]) != is_source(pins[1])) {
        edges_.push_back(is_source(pins[0]) ? DotEdge{end(pins[0]), end(pins[1])}
                                            : DotEdge{end(pins[1]), end(pins[0])});
        return;
      }
    }
    const DotEnd hub{nodes_.size(), 0};
    nodes_.push_back({1, 1, {}});
    for (PinRef it : pins) edges_.push_back(is_source(it) ? DotEdge{end(it), hub} : DotEdge{hub, end(it)});
  }

  const Problem& problem_;
  const std::vector<Rectangle>& footprints_;
  const Part& part_;
  std::vector<DotNode> nodes_;
  std::vector<DotEdge> edges_;
};

/// Layers that hold no box but hubs only are no columns.
std::vector<Cell> cells_of(const std::vector<DotPlace>& places, std::size_t boxes) {
  std::map<int, std::size_t> columns;
  for (std::size_t i = 0; i < boxes; ++i) columns.emplace(places[i].layer, 0);
  std::size_t count = 0;
  for (auto& [layer, column] : columns) column = count++;
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < boxes; ++i) cells.push_back({columns[places[i].layer], places[i].top});
  return cells;
}

}  // namespace

std::optional<std::vector<Cell>> layered_cells(const Problem& problem, const std::vector<Rectangle>& footprints,
                                               const Part& part) {
  const DotGraph graph(problem, footprints, part);
  const auto places = dot_layers(graph.nodes(), graph.edges(), box_distance);
  if (!places) return std::nullopt;
  return cells_of(*places, part.boxes.size());
}

}  // namespace kinemo::views::layout
