#include "views/picture/stub_labels.hpp"

#include "views/layout/geometry.hpp"

#include <limits>

namespace kinemo::views::picture {

namespace {

using layout::Direction;
using layout::Point;
using layout::Rectangle;
using layout::Stub;

constexpr double from_edge = 3;

Stub with_length(Stub stub, double length) {
  stub.end = layout::moved(stub.from, stub.away, length);
  stub.label = layout::stub_label(stub.end, stub.away, {stub.label.width, stub.label.height});
  return stub;
}

/// The name along the line of a stub: above or below it, or at its right or left.
Stub along(Stub stub, bool first, double beside) {
  const Rectangle& label = stub.label;
  const Point from = stub.from;
  double x = first ? from.x + beside : from.x - beside - label.width;
  double y = stub.away == Direction::down ? from.y + from_edge : from.y - from_edge - label.height;
  if (layout::horizontal(stub.away)) {
    x = stub.away == Direction::right ? from.x + from_edge : from.x - from_edge - label.width;
    y = first ? from.y - beside - label.height : from.y + beside;
  }
  stub.label = {x, y, label.width, label.height};
  return stub;
}

/// The best first.
std::vector<Stub> candidates(const Stub& stub) {
  std::vector<Stub> result{stub};
  const double beyond = (layout::horizontal(stub.away) ? stub.label.width : stub.label.height) + 3 * layout::stub_gap;
  for (const double length : {15.0, 10.0, 20.0, 5.0, 25.0, 30.0, 40.0, 50.0, 15 + beyond, 15 + 2 * beyond}) {
    result.push_back(with_length(stub, length));
  }
  for (const double length : {layout::stub_length, 5.0}) {
    // Near the line, or clear of a name that faces the stub.
    for (const double beside : {1.5, stub.label.height / 2 + 0.5}) {
      for (const bool first : {true, false}) result.push_back(along(with_length(stub, length), first, beside));
    }
  }
  return result;
}

double cost(const LabelRoom& room, const Stub& stub) {
  constexpr double solid = 1000;
  const Covered covered = room.covered(stub.label);
  // The line begins at an edge, which is no obstacle.
  const int obstacles = room.obstacles(layout::moved(stub.from, stub.away, 1), stub.end);
  return solid * (covered.solids + obstacles) + covered.lines;
}

Stub best(const LabelRoom& room, const Stub& stub) {
  Stub result = stub;
  double least = std::numeric_limits<double>::infinity();
  for (const Stub& candidate : candidates(stub)) {
    const double its = cost(room, candidate);
    if (its >= least) continue;
    least = its;
    result = candidate;
    if (least == 0) break;
  }
  return result;
}

}  // namespace

void place_stub_labels(LabelRoom& room, layout::Drawing& drawing) {
  // Twice, as names that are moved make room for those before them.
  for (int round = 0; round < 2; ++round) {
    for (std::size_t net = 0; net < drawing.routes.size(); ++net) {
      std::vector<Stub>& stubs = drawing.routes[net].stubs;
      for (std::size_t i = 0; i < stubs.size(); ++i) {
        room.remove_stub(net, i);
        stubs[i] = best(room, stubs[i]);
        room.add_stub(net, i, stubs[i]);
      }
    }
  }
  for (const layout::Route& route : drawing.routes) {
    for (const Stub& stub : route.stubs) {
      drawing.bounds = layout::united(drawing.bounds, layout::united(layout::spanned(stub.from, stub.end), stub.label));
    }
  }
}

}  // namespace kinemo::views::picture
