// One search for a line: what it goes around, crosses and joins.

#include "views/layout/maze.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace kinemo::views::layout {
namespace {

constexpr Rectangle window{-200, -200, 400, 400};
constexpr std::size_t own_net = 0;
constexpr std::size_t other_net = 1;

/// From (-100, 0) to (100, 0), past some things. Empty where there is no way.
std::vector<Point> way_past(const std::vector<Thing>& things) {
  Scene scene;
  for (const Thing& it : things) scene.add(it);
  const auto way = find_way(scene, {{-100, 0}, Direction::right, own_net, {{100, 0}}, {}}, window);
  return way ? way->points : std::vector<Point>();
}

bool meets(const std::vector<Point>& way, const Rectangle& room) {
  for (std::size_t i = 1; i < way.size(); ++i) {
    const Rectangle line = spanned(way[i - 1], way[i]);
    if (line.x <= right(room) && room.x <= right(line) && line.y <= bottom(room) && room.y <= bottom(line)) return true;
  }
  return false;
}

TEST(FindWay, RunsStraightWhereNothingIsInTheWay) {
  EXPECT_EQ(way_past({}).size(), 2u);
  EXPECT_EQ(way_past({{Kind::line, {0, -60, 0, 120}, other_net}}).size(), 2u) << "lines of others are crossed";
  EXPECT_EQ(way_past({{Kind::line, {-50, 0, 100, 0}, own_net}}).size(), 2u) << "its own lines are no hindrance";
}

TEST(FindWay, KeepsOffWhatItMustNotTouch) {
  const Thing things[] = {
      {Kind::box, {-20, -40, 40, 80}},
      {Kind::text, {-20, -6, 40, 12}},
      {Kind::line, {-50, 0, 100, 0}, other_net},  // would run on it
      {Kind::line, {0, 0, 0, 60}, other_net},     // would touch its end
  };
  for (const Thing& thing : things) {
    const std::vector<Point> way = way_past({thing});
    EXPECT_GT(way.size(), 2u) << thing.room.x;
    EXPECT_FALSE(meets(way, thing.room)) << thing.room.x;
  }
}

TEST(FindWay, TakesNoGapThatLeavesNoAir) {
  const auto walls = [](double gap) {
    return std::vector<Thing>{{Kind::box, {-20, -300, 40, 300 - gap / 2}}, {Kind::box, {-20, gap / 2, 40, 300}}};
  };
  EXPECT_FALSE(way_past(walls(20)).empty());
  EXPECT_TRUE(way_past(walls(6)).empty());
}

TEST(FindWay, JoinsLinesOfItsNetWhereTheyAreNearest) {
  const Scene scene;
  const auto way = find_way(scene, {{-100, 0}, Direction::right, own_net, {}, {{50, -100, 0, 200}}}, window);
  ASSERT_TRUE(way);
  EXPECT_EQ(way->points.back().x, 50);
  EXPECT_EQ(way->points.back().y, 0);
}

}  // namespace
}  // namespace kinemo::views::layout
