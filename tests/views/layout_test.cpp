#include "views/layout/layout.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <string>

namespace kinemo::views::layout {
namespace {

struct Segment {
  Point a;
  Point b;
  std::size_t net;
};

bool lies(const Segment& it) {
  return it.a.y == it.b.y;
}

double low(const Segment& it) {
  return lies(it) ? std::min(it.a.x, it.b.x) : std::min(it.a.y, it.b.y);
}
double high(const Segment& it) {
  return lies(it) ? std::max(it.a.x, it.b.x) : std::max(it.a.y, it.b.y);
}
double across(const Segment& it) {
  return lies(it) ? it.a.y : it.a.x;
}

Rectangle shifted(Rectangle it, Point by) {
  return {it.x + by.x, it.y + by.y, it.width, it.height};
}

bool meet(const Rectangle& a, const Rectangle& b) {
  return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height && b.y < a.y + a.height;
}

bool on(Point it, const Segment& line) {
  return it.x >= std::min(line.a.x, line.b.x) && it.x <= std::max(line.a.x, line.b.x) &&
         it.y >= std::min(line.a.y, line.b.y) && it.y <= std::max(line.a.y, line.b.y);
}

/// A box with pins at the middles of equal shares of its left and right sides, and its name below.
Box box(double width, double height, int left, int right) {
  Box it;
  it.size = {width, height};
  for (int i = 0; i < left; ++i) it.pins.push_back({{0, height * (2 * i + 1) / (2 * left)}, Direction::left});
  for (int i = 0; i < right; ++i) it.pins.push_back({{width, height * (2 * i + 1) / (2 * right)}, Direction::right});
  it.texts.push_back({width / 2 - 12, height + 2, 24, 12});
  return it;
}

/// Two-terminal parts from a node to a near one; some nets have many pins.
Problem parts_between_nodes(std::size_t count, std::size_t nodes, std::size_t reach, unsigned seed) {
  std::mt19937 random(seed);
  Problem problem;
  problem.nets.resize(nodes);
  for (Net& net : problem.nets) net.label = {30, 12};
  for (std::size_t i = 0; i < count; ++i) {
    problem.boxes.push_back(random() % 4 ? box(60, 40, 1, 1) : box(60, 60, 1, 2));
    const std::size_t first = random() % nodes;
    for (std::size_t pin = 0; pin < problem.boxes.back().pins.size(); ++pin) {
      const std::size_t node = pin == 0 ? first : (first + random() % reach) % nodes;
      problem.nets[node].pins.push_back({i, pin});
    }
  }
  return problem;
}

/// The user placed all boxes, apart from each other but on no grid.
Problem placed_by_user(std::size_t side, unsigned seed) {
  std::mt19937 random(seed);
  Problem problem = parts_between_nodes(side * side, side * side, 6, seed);
  for (std::size_t i = 0; i < problem.boxes.size(); ++i) {
    problem.boxes[i].fixed = true;
    problem.boxes[i].corner = {static_cast<double>(i % side) * 170 + static_cast<double>(random() % 4000) / 100,
                               static_cast<double>(i / side) * 130 + static_cast<double>(random() % 3000) / 100};
  }
  return problem;
}

/// Two boxes with a channel of 60 between them, in which all lines change sides.
Problem reversed_bus(std::size_t lines) {
  Problem problem;
  const auto pins = static_cast<int>(lines);
  problem.boxes = {box(100, 25.0 * pins, 0, pins), box(100, 25.0 * pins, pins, 0)};
  problem.boxes[0].fixed = problem.boxes[1].fixed = true;
  problem.boxes[1].corner = {160, 0};
  for (std::size_t i = 0; i < lines; ++i) problem.nets.push_back({{{0, i}, {1, lines - 1 - i}}, {30, 12}});
  return problem;
}

std::vector<Segment> segments_of(const Drawing& drawing) {
  std::vector<Segment> result;
  for (std::size_t net = 0; net < drawing.routes.size(); ++net) {
    for (const auto& line : drawing.routes[net].lines) {
      for (std::size_t i = 1; i < line.size(); ++i) result.push_back({line[i - 1], line[i], net});
    }
    for (const Stub& stub : drawing.routes[net].stubs) result.push_back({stub.from, stub.end, net});
  }
  return result;
}

std::vector<Rectangle> rooms_of(const Problem& problem, const Drawing& drawing) {
  std::vector<Rectangle> result;
  for (std::size_t i = 0; i < problem.boxes.size(); ++i) {
    const Box& it = problem.boxes[i];
    result.push_back(shifted({0, 0, it.size.width, it.size.height}, drawing.corners[i]));
    for (const Rectangle& text : it.texts) result.push_back(shifted(text, drawing.corners[i]));
  }
  return result;
}

/// Lines of different nets may cross, in the inside of both.
bool collide(const Segment& a, const Segment& b) {
  if (lies(a) == lies(b)) return across(a) == across(b) && low(a) <= high(b) && low(b) <= high(a);
  const bool touch = across(a) >= low(b) && across(a) <= high(b) && across(b) >= low(a) && across(b) <= high(a);
  const bool cross = across(a) > low(b) && across(a) < high(b) && across(b) > low(a) && across(b) < high(a);
  return touch && !cross;
}

bool runs_through(const Segment& it, const Rectangle& room) {
  const double x = std::min(it.a.x, it.b.x);
  const double y = std::min(it.a.y, it.b.y);
  return x < room.x + room.width && std::max(it.a.x, it.b.x) > room.x && y < room.y + room.height &&
         std::max(it.a.y, it.b.y) > room.y;
}

void expect_tidy_lines(const Problem& problem, const Drawing& drawing) {
  const std::vector<Segment> segments = segments_of(drawing);
  const std::vector<Rectangle> rooms = rooms_of(problem, drawing);
  std::size_t slanted = 0;
  std::size_t collisions = 0;
  std::size_t through = 0;
  for (std::size_t i = 0; i < segments.size(); ++i) {
    slanted += segments[i].a.x != segments[i].b.x && segments[i].a.y != segments[i].b.y;
    for (std::size_t k = 0; k < i; ++k) {
      collisions += segments[i].net != segments[k].net && collide(segments[i], segments[k]);
    }
    for (const Rectangle& room : rooms) through += runs_through(segments[i], room);
  }
  EXPECT_EQ(slanted, 0u);
  EXPECT_EQ(collisions, 0u);
  EXPECT_EQ(through, 0u);
}

Point place(const Problem& problem, const Drawing& drawing, PinRef pin) {
  const Point at = problem.boxes[pin.box].pins[pin.pin].at;
  return {drawing.corners[pin.box].x + at.x, drawing.corners[pin.box].y + at.y};
}

/// Whether the lines of a net make one piece that begins at each of its pins.
bool joins_all(const Problem& problem, const Drawing& drawing, std::size_t net) {
  const auto& lines = drawing.routes[net].lines;
  std::vector<std::size_t> piece(lines.size());
  std::iota(piece.begin(), piece.end(), std::size_t{0});
  const auto merge = [&](std::size_t a, std::size_t b) {
    std::replace(piece.begin(), piece.end(), piece[a], piece[b]);
  };
  for (std::size_t i = 0; i < lines.size(); ++i) {
    for (std::size_t k = 0; k < lines.size(); ++k) {
      for (std::size_t s = 1; s < lines[k].size(); ++s) {
        const Segment line{lines[k][s - 1], lines[k][s], net};
        if (on(lines[i].front(), line) || on(lines[i].back(), line)) merge(i, k);
      }
    }
  }
  const auto begins_at = [&](PinRef pin) {
    const Point at = place(problem, drawing, pin);
    return std::any_of(lines.begin(), lines.end(), [&](const auto& line) {
      return (line.front().x == at.x && line.front().y == at.y) || (line.back().x == at.x && line.back().y == at.y);
    });
  };
  const auto& pins = problem.nets[net].pins;
  return std::all_of(pins.begin(), pins.end(), begins_at) &&
         std::count(piece.begin(), piece.end(), piece[0]) == static_cast<std::ptrdiff_t>(piece.size());
}

void expect_complete_nets(const Problem& problem, const Drawing& drawing) {
  ASSERT_EQ(drawing.routes.size(), problem.nets.size());
  for (std::size_t net = 0; net < problem.nets.size(); ++net) {
    const Route& route = drawing.routes[net];
    const std::size_t pins = problem.nets[net].pins.size();
    if (pins < 2) {
      EXPECT_TRUE(route.lines.empty() && route.stubs.empty()) << net;
    } else if (route.lines.empty()) {
      EXPECT_EQ(route.stubs.size(), pins) << net;
    } else {
      EXPECT_TRUE(route.stubs.empty()) << net;
      EXPECT_TRUE(joins_all(problem, drawing, net)) << net;
    }
  }
}

std::size_t overlaps(const Problem& problem, const Drawing& drawing) {
  std::size_t count = 0;
  std::vector<Rectangle> rooms;
  std::vector<std::size_t> owners;
  for (std::size_t i = 0; i < problem.boxes.size(); ++i) {
    const Box& it = problem.boxes[i];
    rooms.push_back(shifted({0, 0, it.size.width, it.size.height}, drawing.corners[i]));
    for (const Rectangle& text : it.texts) rooms.push_back(shifted(text, drawing.corners[i]));
    owners.resize(rooms.size(), i);
  }
  for (std::size_t i = 0; i < rooms.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k) count += owners[i] != owners[k] && meet(rooms[i], rooms[k]);
  }
  return count;
}

std::size_t nets_by_name(const Drawing& drawing) {
  return static_cast<std::size_t>(
      std::count_if(drawing.routes.begin(), drawing.routes.end(), [](const Route& it) { return !it.stubs.empty(); }));
}

std::string text_of(const Drawing& drawing) {
  std::string result;
  for (const Point& it : drawing.corners) result += std::to_string(it.x) + ' ' + std::to_string(it.y) + '\n';
  for (const Segment& it : segments_of(drawing)) {
    for (const double value : {it.a.x, it.a.y, it.b.x, it.b.y}) result += std::to_string(value) + ' ';
  }
  return result;
}

/// The same with ports for both edges, most of them on nodes inside; some are joined to each other or to nothing.
Problem with_ports(Problem problem, std::size_t count) {
  const std::size_t nodes = problem.nets.size();
  for (std::size_t i = 0; i < count; ++i) {
    const bool left = i % 3 != 0;
    problem.boxes.push_back(box(40, 20, left ? 0 : 1, left ? 1 : 0));
    problem.boxes.back().edge = left ? Edge::left : Edge::right;
    problem.nets[i * nodes / count].pins.push_back({problem.boxes.size() - 1, 0});
  }
  for (const bool left : {true, false}) {
    problem.boxes.push_back(box(40, 20, left ? 0 : 1, left ? 1 : 0));
    problem.boxes.back().edge = left ? Edge::left : Edge::right;
  }
  problem.nets.push_back({{{problem.boxes.size() - 1, 0}, {problem.boxes.size() - 2, 0}}, {30, 12}});
  return problem;
}

Problem with_fixed(Problem problem, std::size_t every) {
  for (std::size_t i = 0; i < problem.boxes.size(); i += every) {
    if (problem.boxes[i].edge != Edge::none) continue;
    problem.boxes[i].fixed = true;
    problem.boxes[i].corner = {3000 - 90.0 * static_cast<double>(i), 0};
  }
  return problem;
}

/// Boxes that stand beyond one of an edge, or on it.
std::size_t boxes_beyond_edges(const Problem& problem, const Drawing& drawing) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < problem.boxes.size(); ++i) {
    const Edge edge = problem.boxes[i].edge;
    if (edge == Edge::none) continue;
    for (std::size_t k = 0; k < problem.boxes.size(); ++k) {
      if (problem.boxes[k].edge == edge) continue;
      const std::size_t left = edge == Edge::left ? i : k;
      const std::size_t right = edge == Edge::left ? k : i;
      count += drawing.corners[left].x + problem.boxes[left].size.width >= drawing.corners[right].x;
    }
  }
  return count;
}

struct Case {
  const char* name;
  Problem problem;
  std::size_t most_nets_by_name;
};

class LayoutOf : public testing::TestWithParam<Case> {};

TEST_P(LayoutOf, KeepsBoxesApartAndLinesOrderly) {
  const Problem& problem = GetParam().problem;
  const Drawing drawing = lay_out(problem);
  EXPECT_EQ(overlaps(problem, drawing), 0u);
  EXPECT_EQ(boxes_beyond_edges(problem, drawing), 0u);
  expect_tidy_lines(problem, drawing);
  expect_complete_nets(problem, drawing);
  EXPECT_LE(nets_by_name(drawing), GetParam().most_nets_by_name);
  EXPECT_EQ(text_of(drawing), text_of(lay_out(problem)));
}

INSTANTIATE_TEST_SUITE_P(
    Problems, LayoutOf,
    testing::Values(Case{"chain", parts_between_nodes(40, 40, 3, 1), 0},
                    Case{"tangle", parts_between_nodes(40, 25, 25, 2), 8},
                    Case{"shared_nodes", parts_between_nodes(60, 12, 4, 3), 12},
                    Case{"several_pieces", parts_between_nodes(900, 700, 4, 4), 200},
                    Case{"ports", with_ports(parts_between_nodes(20, 20, 3, 10), 9), 2},
                    Case{"ports_of_pieces", with_ports(parts_between_nodes(60, 70, 1, 11), 9), 2},
                    Case{"ports_of_fixed", with_fixed(with_ports(parts_between_nodes(20, 20, 3, 12), 9), 4), 6},
                    Case{"ports_alone", with_ports(parts_between_nodes(0, 5, 1, 13), 5), 0},
                    Case{"loose", parts_between_nodes(50, 400, 400, 5), 0}, Case{"narrow_channel", reversed_bus(16), 0},
                    Case{"placed_by_user", placed_by_user(6, 6), 4}),
    [](const auto& it) { return it.param.name; });

TEST(Layout, PinsThatFaceEachOtherAreJoinedByAStraightLine) {
  Problem problem;
  problem.boxes = {box(60, 40, 1, 1), box(60, 40, 1, 1), box(30, 40, 1, 0)};
  problem.nets = {{{{0, 1}, {1, 0}}, {}}, {{{1, 1}, {2, 0}}, {}}};
  const Drawing drawing = lay_out(problem);
  for (const Route& route : drawing.routes) {
    ASSERT_EQ(route.lines.size(), 1u);
    EXPECT_EQ(route.lines[0].size(), 2u);
  }
}

TEST(Layout, LinesBetweenColumnsAreLongEnoughForTheirNames) {
  Problem problem;
  problem.boxes = {box(60, 40, 1, 1), box(60, 40, 1, 1), box(60, 40, 1, 1)};
  problem.nets = {{{{0, 1}, {1, 0}}, {}, {150, 12}}, {{{1, 1}, {2, 0}}, {}, {20, 12}}};
  const Drawing drawing = lay_out(problem);
  EXPECT_GE(drawing.corners[1].x - drawing.corners[0].x - 60, 155);
  EXPECT_LE(drawing.corners[2].x - drawing.corners[1].x - 60, 50);
}

TEST(Layout, ThreeLinesMeetAtADot) {
  Problem problem;
  problem.boxes = {box(60, 40, 1, 1), box(60, 40, 1, 1), box(60, 40, 1, 1)};
  problem.nets = {{{{0, 1}, {1, 0}, {2, 0}}, {}}};
  EXPECT_EQ(lay_out(problem).routes[0].dots.size(), 1u);
}

TEST(Layout, BoxesOfTheUserStayAndOthersStandApart) {
  Problem problem = parts_between_nodes(30, 30, 4, 7);
  problem.boxes[3].fixed = problem.boxes[4].fixed = true;
  problem.boxes[3].corner = {103.5, 77};
  problem.boxes[4].corner = {-400, 1000};
  const Drawing drawing = lay_out(problem);
  EXPECT_EQ(drawing.corners[3].x, 103.5);
  EXPECT_EQ(drawing.corners[4].y, 1000);
  EXPECT_EQ(overlaps(problem, drawing), 0u);
  for (std::size_t i = 5; i < 30; ++i) EXPECT_EQ(std::fmod(drawing.corners[i].x, 10), 0) << i;
}

/// Each is joined to the user's box alone, and is told apart from it by nothing but its turn.
TEST(Layout, EqualBoxesBesideThoseOfTheUserTakeEqualRoom) {
  Problem problem;
  problem.boxes.resize(4, box(60, 400, 1, 1));
  problem.boxes[0] = box(60, 100, 3, 0);
  problem.boxes[0].fixed = true;
  for (std::size_t i = 1; i < 4; ++i) problem.nets.push_back({{{0, i - 1}, {i, 1}}, {300, 12}});
  place_boxes(problem);
  const std::vector<Box>& boxes = problem.boxes;
  EXPECT_EQ(boxes[2].corner.y, boxes[3].corner.y);
  EXPECT_EQ(boxes[2].corner.x - boxes[1].corner.x, boxes[3].corner.x - boxes[2].corner.x);
}

Problem chain(std::size_t count) {
  Problem problem;
  problem.boxes.resize(count, box(60, 40, 1, 1));
  for (std::size_t i = 1; i < count; ++i) problem.nets.push_back({{{i - 1, 1}, {i, 0}}, {30, 12}});
  return problem;
}

TEST(Layout, LongChainsAreFoldedAsTextsAre) {
  const Problem problem = chain(60);
  const Drawing drawing = lay_out(problem);
  EXPECT_LT(drawing.bounds.width, 3 * drawing.bounds.height);
  expect_tidy_lines(problem, drawing);
  expect_complete_nets(problem, drawing);
}

/// Where the user placed all boxes, the user sees to the length of lines.
TEST(Layout, LongLinesAreToldByNamesUnlessTheUserPlacedEverything) {
  for (const bool all_placed : {true, false}) {
    for (const double room_for_name : {0.0, 30.0}) {
      Problem problem = chain(2);
      for (Box& it : problem.boxes) it.fixed = true;
      problem.boxes[1].corner = {3000, 0};
      if (!all_placed) problem.boxes.push_back(box(60, 40, 1, 1));
      problem.nets[0].label.width = room_for_name;
      EXPECT_EQ(lay_out(problem).routes[0].stubs.empty(), all_placed || room_for_name == 0);
    }
  }
}

TEST(Layout, UnjoinedBoxesFillAPage) {
  Problem problem;
  problem.boxes.resize(1000, box(60, 40, 1, 1));
  const Rectangle page = lay_out(problem).bounds;
  EXPECT_GT(page.width, page.height);
  EXPECT_LT(page.width, 2 * page.height);
}

/// A ground of thousands of pins is told by its name at each of them, with room for it.
TEST(Layout, LargeNetsAreNamedAtTheirPins) {
  Problem problem;
  problem.boxes.resize(3000, box(60, 40, 1, 1));
  problem.nets.resize(1);
  problem.nets[0].label = {35, 12};
  for (std::size_t i = 0; i < problem.boxes.size(); ++i) problem.nets[0].pins.push_back({i, 1});
  const Drawing drawing = lay_out(problem);
  const std::vector<Rectangle> rooms = rooms_of(problem, drawing);
  ASSERT_EQ(drawing.routes[0].stubs.size(), 3000u);
  for (std::size_t i = 0; i < 3000; i += 100) {
    const Rectangle label = drawing.routes[0].stubs[i].label;
    EXPECT_TRUE(std::none_of(rooms.begin(), rooms.end(), [&](const Rectangle& it) { return meet(it, label); })) << i;
  }
}

TEST(Layout, WhereBoxesShutAPinInItsNetIsNamed) {
  Problem problem;
  problem.boxes.resize(3);
  problem.boxes[0] = box(10, 10, 0, 1);
  problem.boxes[0].texts.clear();
  problem.boxes[1] = box(100, 10, 0, 0);
  problem.boxes[2] = box(60, 40, 1, 1);
  for (Box& it : problem.boxes) it.fixed = true;
  problem.boxes[1].corner = {10, 0};  // edge to edge with the pin
  problem.boxes[1].size = {100, 10};
  problem.boxes[2].corner = {500, 0};
  problem.nets = {{{{0, 0}, {2, 0}}, {20, 12}}};
  EXPECT_EQ(lay_out(problem).routes[0].stubs.size(), 2u);
}

/// Boxes of 60 x 40 with a pin on each side, by their corners.
Problem at_corners(const std::vector<Point>& corners) {
  Problem problem;
  for (const Point& corner : corners) {
    problem.boxes.push_back(box(60, 40, 1, 1));
    problem.boxes.back().fixed = true;
    problem.boxes.back().corner = corner;
  }
  return problem;
}

TEST(Layout, NearPinsThatFaceEachOtherAreJoinedWithoutNames) {
  struct Pair {
    Point second;
    std::size_t points;
  };
  for (const Pair& it : {Pair{{60, 0}, 1}, Pair{{62, 0}, 2}, Pair{{65, 0}, 2}, Pair{{70, 0}, 2}, Pair{{65, 10}, 4}}) {
    Problem problem = at_corners({{0, 0}, it.second, {400, 0}});
    problem.nets = {{{{0, 1}, {1, 0}}, {20, 12}}};
    const Route route = lay_out(problem).routes[0];
    ASSERT_EQ(route.lines.size(), 1u) << it.second.x;
    EXPECT_EQ(route.lines[0].size(), it.points) << it.second.x;
    EXPECT_EQ(route.dots.size(), it.second.x == 60) << it.second.x;
    problem.nets[0].pins.push_back({2, 0});
    const Drawing of_three = lay_out(problem);
    if (it.second.x == 70) {
      EXPECT_TRUE(joins_all(problem, of_three, 0));
    } else {
      EXPECT_EQ(of_three.routes[0].lines.size(), 1u) << it.second.x;
      EXPECT_EQ(of_three.routes[0].stubs.size(), 2u) << it.second.x;
    }
    expect_tidy_lines(problem, of_three);
  }
}

/// Two rows of blocks 0 to 10 apart, where only shut-in pins are told by names.
TEST(Layout, StubsInGapsReachNothingOfOthers) {
  Problem problem = at_corners({{0, 0}, {60, 0}, {123, 0}, {188, 0}, {0, 120}, {70, 120}, {140, 120}, {210, 120}});
  for (Box& it : problem.boxes) it.texts[0].y += 3;
  problem.nets = {{{{0, 1}, {1, 0}}, {25, 12}},
                  {{{2, 1}, {3, 0}}, {40, 12}},
                  {{{1, 1}, {7, 0}}, {8, 12}},
                  {{{0, 0}, {4, 1}, {6, 1}}, {8, 12}},
                  {{{4, 0}, {5, 0}, {6, 0}, {2, 0}}, {8, 12}},
                  {{{5, 1}, {7, 1}, {3, 1}}, {20, 12}}};
  const Drawing drawing = lay_out(problem);
  expect_tidy_lines(problem, drawing);
  EXPECT_EQ(nets_by_name(drawing), 2u);
}

TEST(Layout, BearsAnyNumbers) {
  const double huge = std::numeric_limits<double>::max();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const double size : {nan, 0.0, -5.0, huge, std::numeric_limits<double>::infinity()}) {
    Problem problem = parts_between_nodes(12, 8, 8, 9);
    for (Box& it : problem.boxes) {
      it.size = {size, size};
      it.pins[0].at = {size, 0};
      it.texts.push_back({size, size, size, size});
    }
    problem.boxes[0].fixed = true;
    problem.boxes[0].corner = {size, size};
    problem.nets[0].label = {size, size};
    problem.nets[1].pins.push_back({99, 0});
    problem.nets[2].pins.push_back(PinRef{0, 99});
    const Drawing drawing = lay_out(problem);
    for (const Point& it : drawing.corners) EXPECT_TRUE(std::isfinite(it.x) && std::isfinite(it.y)) << size;
    EXPECT_TRUE(std::isfinite(drawing.bounds.width)) << size;
  }
  EXPECT_TRUE(lay_out({}).corners.empty());
}

}  // namespace
}  // namespace kinemo::views::layout
