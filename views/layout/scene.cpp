#include "views/layout/scene.hpp"

#include <algorithm>
#include <cmath>

namespace kinemo::views::layout {

namespace {

constexpr double square = 100;
constexpr std::int64_t most_squares = 1024;

struct Squares {
  explicit Squares(const Rectangle& it)
      : left(std::llround(std::floor(it.x / square))),
        right(std::llround(std::floor((it.x + it.width) / square))),
        top(std::llround(std::floor(it.y / square))),
        bottom(std::llround(std::floor((it.y + it.height) / square))) {}

  bool many() const { return (right - left + 1) > most_squares / (bottom - top + 1); }

  std::int64_t left;
  std::int64_t right;
  std::int64_t top;
  std::int64_t bottom;
};

bool touch(const Rectangle& a, const Rectangle& b) {
  return a.x <= right(b) && b.x <= right(a) && a.y <= bottom(b) && b.y <= bottom(a);
}

}  // namespace

std::size_t Scene::add(const Thing& thing) {
  const std::size_t id = things_.size();
  things_.push_back(thing);
  const Squares squares(thing.room);
  if (squares.many()) {
    large_.push_back(id);
    return id;
  }
  for (auto row = squares.top; row <= squares.bottom; ++row) {
    for (auto column = squares.left; column <= squares.right; ++column) squares_[key(column, row)].push_back(id);
  }
  return id;
}

std::vector<std::size_t> Scene::near(const Rectangle& window) const {
  std::vector<std::size_t> result;
  const auto take = [&](std::size_t it) {
    if (things_[it].alive && touch(things_[it].room, window)) result.push_back(it);
  };
  const Squares squares(window);
  if (static_cast<std::size_t>((squares.right - squares.left + 1) * (squares.bottom - squares.top + 1)) >
      squares_.size()) {
    for (std::size_t i = 0; i < things_.size(); ++i) take(i);
    return result;
  }
  for (std::size_t it : large_) take(it);
  for (auto row = squares.top; row <= squares.bottom; ++row) {
    for (auto column = squares.left; column <= squares.right; ++column) {
      const auto found = squares_.find(key(column, row));
      if (found == squares_.end()) continue;
      for (std::size_t it : found->second) take(it);
    }
  }
  std::sort(result.begin(), result.end());
  result.erase(std::unique(result.begin(), result.end()), result.end());
  return result;
}

}  // namespace kinemo::views::layout
