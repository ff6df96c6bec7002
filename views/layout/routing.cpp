#include <algorithm>
#include <array>
#include <numeric>

#include "views/layout/legs.hpp"
#include "views/layout/net_lines.hpp"

namespace kinemo::views::layout {

namespace {

/// A net with a name that takes more line than this, or more from one pin to the next, is told by its name at the pins.
constexpr double most_length = 4000;
constexpr double most_length_of_branch = 1500;
/// Between the tracks of narrow channels, for what found no way on wider ones.
constexpr std::array fine_steps{5.0, 2.5};

class Router {
 public:
  explicit Router(const Problem& problem)
      : problem_(problem), effort_(problem), nets_(problem.nets.size()), stub_rule_(problem) {
    drawing_.routes.resize(problem.nets.size());
  }

  Drawing run() {
    add_boxes();
    reserve();
    std::vector<std::size_t> order = short_ones_first();
    for (std::size_t net : order) route(net);
    for (std::size_t net : order) route_again(net);
    for (const double step : fine_steps) {
      for (std::size_t net : order) {
        if (drawing_.routes[net].lines.empty()) route(net, step);
      }
    }
    for (std::size_t net : order) drawing_.routes[net].dots = dots_of(drawing_.routes[net].lines);
    std::erase_if(order, [&](std::size_t net) { return !drawing_.routes[net].lines.empty(); });
    name_instead(order);
    set_bounds();
    return std::move(drawing_);
  }

 private:
  struct NetState {
    bool named = false;
    std::vector<Leg> legs;
    JoinOrder order;
    std::vector<bool> joined;  ///< by pin, where stubs stand for the net's lines: to an earlier pin, all the same
    std::vector<std::size_t> leg_things;
    std::vector<std::size_t> line_things;
  };

  void add_boxes() {
    for (const Box& box : problem_.boxes) {
      drawing_.corners.push_back(box.corner);
      scene_.add({Kind::box, outline(box)});
      for (const Rectangle& text : box.texts) scene_.add({Kind::text, moved(text, box.corner)});
    }
  }

  /// Legs first, as they can't be anywhere else. They are measured while there is nothing but boxes and texts.
  void reserve() {
    const bool all_fixed = std::all_of(problem_.boxes.begin(), problem_.boxes.end(), [](auto& it) { return it.fixed; });
    for (std::size_t net = 0; net < nets_.size(); ++net) decide(net, all_fixed);
    for (std::size_t net = 0; net < nets_.size(); ++net) {
      if (!nets_[net].named) add_legs(net);
    }
    for (std::size_t net = 0; net < nets_.size(); ++net) {
      if (nets_[net].named) add_stubs(net);
    }
  }

  /// Whether lines join the net, which then has legs, or names stand for it.
  void decide(std::size_t net, bool all_fixed) {
    const Net& it = problem_.nets[net];
    nets_[net].named = stub_rule_(it);
    if (nets_[net].named || it.pins.size() < 2) return;
    make_legs(net);
    nets_[net].named = is_long(nets_[net].order) && it.label.width > 0 && !all_fixed;
  }

  static bool is_long(const JoinOrder& order) {
    return order.length > most_length || order.longest_branch > most_length_of_branch;
  }

  void make_legs(std::size_t net) {
    for (PinRef pin : problem_.nets[net].pins) {
      nets_[net].legs.push_back({place_of(problem_, pin), leg_end(problem_, scene_, pin), pin_of(problem_, pin).away});
    }
    nets_[net].order = join_order(nets_[net].legs);
  }

  void add_legs(std::size_t net) {
    for (const Leg& leg : nets_[net].legs) {
      nets_[net].leg_things.push_back(scene_.add({Kind::leg, spanned(leg.pin, leg.end), net, leg.away}));
    }
  }

  void add_stubs(std::size_t net) {
    const std::vector<PinRef>& pins = problem_.nets[net].pins;
    for (std::size_t i = 0; i < pins.size(); ++i) {
      const PinRef pin = pins[i];
      if (!nets_[net].joined.empty() && nets_[net].joined[i]) continue;
      const Stub stub = place_stub(problem_, scene_, pin, problem_.nets[net].label);
      scene_.add({Kind::stub, spanned(stub.from, stub.end), net});
      scene_.add({Kind::text, stub.label});
      drawing_.routes[net].stubs.push_back(stub);
    }
  }

  std::vector<std::size_t> short_ones_first() const {
    std::vector<std::size_t> order;
    for (std::size_t net = 0; net < nets_.size(); ++net) {
      if (nets_[net].legs.size() > 1 && !nets_[net].named) order.push_back(net);
    }
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return nets_[a].order.length < nets_[b].order.length; });
    return order;
  }

  void route(std::size_t net, double step = grid_step) {
    if (auto branches = find_branches(scene_, net, nets_[net].legs, nets_[net].order, effort_, step)) {
      draw(net, *std::move(branches));
    }
  }

  void draw(std::size_t net, std::vector<std::vector<Point>> branches) {
    for (const auto& line : branches) {
      for (std::size_t i = 1; i < line.size(); ++i) {
        nets_[net].line_things.push_back(scene_.add({Kind::line, spanned(line[i - 1], line[i]), net}));
      }
    }
    drawing_.routes[net].lines = std::move(branches);
  }

  /// With all others in place: lines that came first make room, and what found no way may find one now.
  void route_again(std::size_t net) {
    std::vector<std::vector<Point>> before = std::move(drawing_.routes[net].lines);
    drawing_.routes[net].lines.clear();
    for (std::size_t it : nets_[net].line_things) scene_.remove(it);
    nets_[net].line_things.clear();
    route(net);
    if (drawing_.routes[net].lines.empty()) draw(net, std::move(before));
  }

  /// What found no way gets stubs, once nobody's legs are in their way. Pins that are as good as joined stay so.
  void name_instead(const std::vector<std::size_t>& nets) {
    for (std::size_t net : nets) {
      for (std::size_t leg : nets_[net].leg_things) scene_.remove(leg);
    }
    for (std::size_t net : nets) {
      Bridges bridges = find_bridges(scene_, net, nets_[net].legs);
      drawing_.routes[net].dots = dots_of(bridges.lines);
      draw(net, std::move(bridges.lines));
      nets_[net].joined = std::move(bridges.joined);
    }
    for (std::size_t net : nets) add_stubs(net);
  }

  void set_bounds() {
    bool any = false;
    const auto include = [&](const Rectangle& it) {
      drawing_.bounds = any ? united(drawing_.bounds, it) : it;
      any = true;
    };
    for (const Box& box : problem_.boxes) include(moved(extent(box), box.corner));
    for (const Route& route : drawing_.routes) {
      for (const Stub& stub : route.stubs) include(united(spanned(stub.from, stub.end), stub.label));
      for (const auto& line : route.lines) {
        for (const Point& it : line) include(spanned(it, it));
      }
    }
  }

  const Problem& problem_;
  Drawing drawing_;
  Scene scene_;
  Effort effort_;
  std::vector<NetState> nets_;
  StubRule stub_rule_;
};

}  // namespace

Drawing route_nets(const Problem& problem) {
  const Problem input = tidy(problem);
  return Router(input).run();
}

Drawing lay_out(Problem problem) {
  place_boxes(problem);
  return route_nets(problem);
}

}  // namespace kinemo::views::layout
