#include "views/layout/columns.hpp"

#include <gtest/gtest.h>

namespace kinemo::views::layout {
namespace {

constexpr double width = 60;

Box two_terminals() {
  Box box;
  box.size = {width, 40};
  box.pins = {{{0, 20}, Direction::left}, {{width, 20}, Direction::right}};
  return box;
}

/// Two columns of boxes, each joined to one of the other column: the uppermost to the lowest, and so on.
std::vector<Point> crossed_columns(std::size_t rows, double second_top) {
  Problem problem;
  problem.boxes.resize(2 * rows, two_terminals());
  Part part;
  std::vector<Cell> cells;
  for (std::size_t i = 0; i < 2 * rows; ++i) {
    part.boxes.push_back(i);
    const double top = static_cast<double>(i % rows) * 100;
    cells.push_back({i / rows, i < rows ? top : top + second_top});
  }
  for (std::size_t i = 0; i < rows; ++i) part.nets.push_back({{i, 1}, {2 * rows - 1 - i, 0}});
  return corners_in_columns(problem, footprints(problem), part, cells);
}

TEST(Columns, BoxesMoveALittleToMakeLinesStraight) {
  const std::vector<Point> near = crossed_columns(1, 23);
  EXPECT_EQ(near[0].y, near[1].y);
  const std::vector<Point> far = crossed_columns(1, 300);
  EXPECT_EQ(far[1].y - far[0].y, 300);
}

TEST(Columns, StandAsFarApartAsTheLinesBetweenThemNeed) {
  for (const std::size_t rows : {2U, 6U, 20U}) {
    const std::vector<Point> corners = crossed_columns(rows, 0);
    const double between = corners[rows].x - corners[0].x - width;
    EXPECT_GE(between, static_cast<double>(rows) * grid_step);
    EXPECT_LE(between, static_cast<double>(rows + 2) * grid_step);
  }
}

}  // namespace
}  // namespace kinemo::views::layout
