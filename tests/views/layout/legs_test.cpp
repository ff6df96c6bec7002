#include "views/layout/legs.hpp"

#include <gtest/gtest.h>

namespace kinemo::views::layout {
namespace {

/// A box at the origin with one pin at its right or lower side, and its name below.
Problem box_with_pin(Direction away) {
  Box box;
  box.size = {60, 40};
  box.pins = {{away == Direction::right ? Point{60, 20} : Point{30, 40}, away}};
  box.texts = {{10, 42, 40, 12}};
  Problem problem;
  problem.boxes = {box};
  return problem;
}

Scene scene_of(const Problem& problem) {
  Scene scene;
  for (const Box& box : problem.boxes) {
    scene.add({Kind::box, outline(box)});
    for (const Rectangle& text : box.texts) scene.add({Kind::text, moved(text, box.corner)});
  }
  return scene;
}

TEST(Legs, EndBeyondTheNameOfTheirBox) {
  const Problem problem = box_with_pin(Direction::down);
  const Point end = leg_end(problem, scene_of(problem), {0, 0});
  EXPECT_EQ(end.x, 30);
  EXPECT_GT(end.y, 42 + 12);
}

TEST(Legs, LeaveRoomForTheLegOfThePinOnTheOtherSide) {
  const Problem problem = box_with_pin(Direction::right);
  Scene scene = scene_of(problem);
  EXPECT_EQ(leg_end(problem, scene, {0, 0}).x, 60 + leg_length);
  scene.add({Kind::box, {70, 0, 60, 40}});
  const double end = leg_end(problem, scene, {0, 0}).x;
  EXPECT_GT(end, 60);
  EXPECT_LT(end, 65);
}

TEST(Stubs, StandWhereTheirNamesCoverNothing) {
  const Problem problem = box_with_pin(Direction::right);
  Scene scene = scene_of(problem);
  EXPECT_EQ(place_stub(problem, scene, {0, 0}, {30, 12}).end.x, 60 + stub_length);
  const Rectangle beside_the_line{80, 23, 15, 17};
  scene.add({Kind::text, beside_the_line});
  const Stub stub = place_stub(problem, scene, {0, 0}, {30, 12});
  EXPECT_FALSE(overlap(stub.label, beside_the_line));
  scene.add({Kind::box, {62, 0, 5000, 40}});
  const double end = place_stub(problem, scene, {0, 0}, {30, 12}).end.x;
  EXPECT_GE(end, 60);
  EXPECT_LT(end, 62) << "short of what is there";
}

}  // namespace
}  // namespace kinemo::views::layout
