#include "views/layout/parts.hpp"

#include <algorithm>
#include <numeric>

namespace kinemo::views::layout {

namespace {

/// Boxes joined by nets. A set's representative is its smallest box.
class BoxSets {
 public:
  explicit BoxSets(std::size_t count) : parent_(count) { std::iota(parent_.begin(), parent_.end(), std::size_t{0}); }

  std::size_t find(std::size_t it) {
    while (parent_[it] != it) it = parent_[it] = parent_[parent_[it]];
    return it;
  }

  void merge(std::size_t a, std::size_t b) {
    a = find(a);
    b = find(b);
    parent_[std::max(a, b)] = std::min(a, b);
  }

 private:
  std::vector<std::size_t> parent_;
};

std::vector<std::vector<PinRef>> movable_nets(const Problem& problem) {
  const StubRule stubs(problem);
  std::vector<std::vector<PinRef>> result;
  for (const Net& net : problem.nets) {
    if (stubs(net)) continue;
    std::vector<PinRef> pins = net.pins;
    std::erase_if(pins, [&](PinRef it) { return problem.boxes[it.box].fixed; });
    if (pins.size() > 1) result.push_back(std::move(pins));
  }
  return result;
}

Rectangle of_stub(const Pin& pin, Size label) {
  const Point end = moved(pin.at, pin.away, stub_length);
  return united(spanned(pin.at, end), stub_label(end, pin.away, label));
}

/// Where the name of a net of few pins stands most likely: at a line to the right. Larger nets have longer lines.
const PinRef* named_pin(const Problem& problem, const Net& net) {
  constexpr std::size_t few = 3;
  if (net.pins.size() > few || net.name.width <= 0) return nullptr;
  const auto it = std::find_if(net.pins.begin(), net.pins.end(),
                               [&](PinRef pin) { return pin_of(problem, pin).away == Direction::right; });
  return it == net.pins.end() ? nullptr : &*it;
}

/// Columns and the other pin's leg keep the rest of the room.
double leg_with_name(const Net& net) {
  constexpr double air = 6;
  return std::max(leg_length, net.name.width + air - column_distance - leg_length);
}

/// Boxes in the order in which they are met along nets, part by part if there are several.
std::vector<std::size_t> walk(const Part& part, const std::vector<std::vector<std::size_t>>& nets_of,
                              std::size_t start) {
  std::vector<std::size_t> order;
  std::vector<bool> seen(part.boxes.size());
  std::vector<bool> net_seen(part.nets.size());
  std::size_t next = 0;
  const auto reach = [&](std::size_t box) {
    if (!seen[box]) order.push_back(box);
    seen[box] = true;
  };
  reach(start);
  for (std::size_t first = 0; first < part.boxes.size(); ++first) {
    for (; next < order.size(); ++next) {
      for (std::size_t net : nets_of[order[next]]) {
        if (net_seen[net]) continue;
        net_seen[net] = true;
        for (PinRef it : part.nets[net]) reach(it.box);
      }
    }
    reach(first);
  }
  return order;
}

/// From one end of the part to the other.
std::vector<std::size_t> by_nearness(const Part& part) {
  std::vector<std::vector<std::size_t>> nets_of(part.boxes.size());
  for (std::size_t net = 0; net < part.nets.size(); ++net) {
    for (PinRef it : part.nets[net]) nets_of[it.box].push_back(net);
  }
  return walk(part, nets_of, walk(part, nets_of, 0).back());
}

}  // namespace

void add_stub_room(const Problem& problem, PinRef pin, Size label, Rectangle& footprint) {
  footprint = united(footprint, of_stub(pin_of(problem, pin), label));
}

std::vector<Rectangle> footprints(const Problem& problem) {
  std::vector<Rectangle> result;
  for (const Box& box : problem.boxes) result.push_back(extent(box));
  const StubRule stubs(problem);
  for (const Net& net : problem.nets) {
    if (net.pins.size() < 2 && !stubs(net)) continue;
    for (const PinRef& it : net.pins) {
      const Pin& pin = pin_of(problem, it);
      const double length = &it == named_pin(problem, net) ? leg_with_name(net) : leg_length;
      const Rectangle room = stubs(net) ? of_stub(pin, net.label) : spanned(pin.at, moved(pin.at, pin.away, length));
      result[it.box] = united(result[it.box], room);
    }
  }
  return result;
}

std::vector<Part> parts_of(const Problem& problem) {
  const std::vector<std::vector<PinRef>> nets = movable_nets(problem);
  BoxSets sets(problem.boxes.size());
  for (const auto& net : nets) {
    for (PinRef it : net) sets.merge(net.front().box, it.box);
  }
  std::vector<Part> parts;
  std::vector<std::size_t> part_of(problem.boxes.size());
  std::vector<std::size_t> place_in_part(problem.boxes.size());
  for (std::size_t box = 0; box < problem.boxes.size(); ++box) {
    if (problem.boxes[box].fixed) continue;
    const std::size_t first = sets.find(box);
    if (first == box) {
      part_of[box] = parts.size();
      parts.emplace_back();
    }
    part_of[box] = part_of[first];
    place_in_part[box] = parts[part_of[box]].boxes.size();
    parts[part_of[box]].boxes.push_back(box);
  }
  for (const auto& net : nets) {
    std::vector<PinRef>& pins = parts[part_of[net.front().box]].nets.emplace_back();
    for (PinRef it : net) pins.push_back({place_in_part[it.box], it.pin});
  }
  return parts;
}

std::pair<Part, Part> halves_of(const Part& part) {
  const std::vector<std::size_t> order = by_nearness(part);
  std::vector<bool> in_second(part.boxes.size());
  for (std::size_t i = order.size() / 2; i < order.size(); ++i) in_second[order[i]] = true;
  std::pair<Part, Part> halves;
  std::vector<std::size_t> place(part.boxes.size());
  for (std::size_t i = 0; i < part.boxes.size(); ++i) {
    std::vector<std::size_t>& boxes = (in_second[i] ? halves.second : halves.first).boxes;
    place[i] = boxes.size();
    boxes.push_back(part.boxes[i]);
  }
  for (const auto& net : part.nets) {
    std::vector<PinRef> first;
    std::vector<PinRef> second;
    for (PinRef it : net) (in_second[it.box] ? second : first).push_back({place[it.box], it.pin});
    if (first.size() > 1) halves.first.nets.push_back(std::move(first));
    if (second.size() > 1) halves.second.nets.push_back(std::move(second));
  }
  return halves;
}

}  // namespace kinemo::views::layout
