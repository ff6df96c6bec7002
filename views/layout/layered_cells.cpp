#include <algorithm>
#include <cmath>
#include <map>

#include "views/layout/dot_engine.hpp"
#include "views/layout/edge_boxes.hpp"
#include "views/layout/layers.hpp"

namespace kinemo::views::layout {

namespace {

/// Room between boxes of one column for a line and air on both sides.
constexpr double box_distance = 20;
constexpr std::size_t most_boxes = 1000;
/// Nodes, and layers that edges pass: what dot's time grows with.
constexpr std::size_t most_passages = 1500;

struct NetsOfBox {
  std::size_t count = 0;
  std::size_t largest = 0;

  void add(std::size_t pins) {
    ++count;
    largest = std::max(largest, pins);
  }
};

class DotGraph {
 public:
  DotGraph(const Problem& problem, const Part& part)
      : problem_(problem), part_(part), nodes_(part.boxes.size()), nets_of_(part.boxes.size()) {
    for (const auto& net : part.nets) {
      for (PinRef it : net) nets_of_[it.box].add(net.size());
    }
    for (const auto& net : part.nets) add_net(net);
  }

  void set_sizes(const std::vector<Rectangle>& footprints) {
    for (std::size_t i = 0; i < part_.boxes.size(); ++i) {
      const Rectangle& room = footprints[part_.boxes[i]];
      nodes_[i] = {room.width, even(std::max(room.height, 1.0)), {}, layer_of(problem_.boxes[part_.boxes[i]])};
      for (const Pin& pin : problem_.boxes[part_.boxes[i]].pins) {
        nodes_[i].ports.push_back(std::clamp(std::round(pin.at.y - room.y), 0.0, nodes_[i].height));
      }
    }
  }

  const std::vector<DotNode>& nodes() const { return nodes_; }
  const std::vector<DotEdge>& edges() const { return edges_; }

 private:
  bool is_source(PinRef pin) const {
    return problem_.boxes[part_.boxes[pin.box]].pins[pin.pin].away == Direction::right;
  }

  static DotLayer layer_of(const Box& box) {
    if (!goes_to_edge(box)) return DotLayer::any;
    return box.edge == Edge::left ? DotLayer::first : DotLayer::last;
  }

  bool at_edge(PinRef pin) const { return goes_to_edge(problem_.boxes[part_.boxes[pin.box]]); }

  /// Graphviz rounds halves of heights; many small errors would make chains of boxes climb.
  static double even(double height) { return 2 * std::ceil(height / 2); }

  void add_edge(DotEnd tail, DotEnd head, int weight) { edges_.push_back({tail, head, weight}); }

  /// Two pins that look at each other are joined directly, others by a hub between them: so pins of the same side come
  /// into the same column.
  void add_net(const std::vector<PinRef>& pins) {
    const auto end = [](PinRef pin) { return DotEnd{pin.box, pin.pin}; };
    if (pins.size() == 2) {
      if (pins[0].box == pins[1].box) return;
      if (is_source(pins[0]) != is_source(pins[1])) {
        const bool in_order = is_source(pins[0]);
        return add_edge(end(pins[in_order ? 0 : 1]), end(pins[in_order ? 1 : 0]),
                        at_edge(pins[0]) || at_edge(pins[1]) ? most_weight / 2 : most_weight);
      }
    }
    const DotEnd hub{nodes_.size(), 0};
    nodes_.push_back({2, 2, {}, DotLayer::any});
    for (PinRef it : pins) {
      is_source(it) ? add_edge(end(it), hub, weight(it, pins)) : add_edge(hub, end(it), weight(it, pins));
    }
  }

  /// Chains run straight, while what leads to an end or into a large net stands aside.
  int weight(PinRef pin, const std::vector<PinRef>& net) const {
    const NetsOfBox& nets = nets_of_[pin.box];
    if (nets.count < 2 || net.size() > medium_net) return 1;
    if (nets.largest > medium_net) return 2;
    return nets.largest > small_net ? most_weight / 2 : most_weight;
  }

  static constexpr std::size_t small_net = 3;
  static constexpr std::size_t medium_net = 5;
  static constexpr int most_weight = 6;

  const Problem& problem_;
  const Part& part_;
  std::vector<DotNode> nodes_;
  std::vector<DotEdge> edges_;
  std::vector<NetsOfBox> nets_of_;
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

std::vector<Cell> plain_cells(const std::vector<Rectangle>& footprints, const Part& part) {
  const auto columns = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(part.boxes.size()))));
  std::vector<Cell> cells;
  double top = 0;
  double next = 0;
  for (std::size_t i = 0; i < part.boxes.size(); ++i) {
    if (i % columns == 0) top = next;
    next = std::max(next, top + footprints[part.boxes[i]].height + box_distance);
    cells.push_back({i % columns, top});
  }
  return cells;
}

/// Layers by longest paths, where a cycle is cut at its first node.
std::vector<std::size_t> rough_layers(std::size_t nodes, const std::vector<DotEdge>& edges) {
  std::vector<std::vector<std::size_t>> heads(nodes);
  std::vector<std::size_t> tails(nodes);
  for (const DotEdge& it : edges) {
    heads[it.tail.node].push_back(it.head.node);
    ++tails[it.head.node];
  }
  std::vector<std::size_t> layers(nodes);
  std::vector<bool> done(nodes);
  std::vector<std::size_t> ready;
  for (std::size_t i = 0; i < nodes; ++i) {
    if (tails[i] == 0) ready.push_back(i);
  }
  for (std::size_t first = 0; first < nodes || !ready.empty();) {
    const std::size_t node = ready.empty() ? first++ : ready.back();
    if (!ready.empty()) ready.pop_back();
    if (done[node]) continue;
    done[node] = true;
    for (std::size_t head : heads[node]) {
      if (done[head]) continue;
      layers[head] = std::max(layers[head], layers[node] + 1);
      if (--tails[head] == 0) ready.push_back(head);
    }
  }
  return layers;
}

}  // namespace

bool bearable_for_layers(const Problem& problem, const Part& part) {
  if (part.boxes.size() > most_boxes) return false;
  const DotGraph graph(problem, part);
  const std::vector<std::size_t> layers = rough_layers(graph.nodes().size(), graph.edges());
  const std::size_t last = *std::max_element(layers.begin(), layers.end());
  const auto at_end = [&](std::size_t node) {
    return node < part.boxes.size() && goes_to_edge(problem.boxes[part.boxes[node]]);
  };
  std::size_t passages = graph.nodes().size();
  for (const DotEdge& it : graph.edges()) {
    const std::size_t head = at_end(it.head.node) ? last : layers[it.head.node];
    const auto [low, high] = std::minmax(layers[it.tail.node], head);
    if (high > low) passages += high - low - 1;
  }
  return passages <= most_passages;
}

std::vector<Cell> layered_cells(const Problem& problem, const std::vector<Rectangle>& footprints, const Part& part) {
  DotGraph graph(problem, part);
  graph.set_sizes(footprints);
  const auto places = dot_layers(graph.nodes(), graph.edges(), box_distance);
  return places ? cells_of(*places, part.boxes.size()) : plain_cells(footprints, part);
}

}  // namespace kinemo::views::layout
