#pragma once

#include <cstdint>

#include "views/layout/maze.hpp"

namespace kinemo::views::layout {

/// Tracks of a window and the prices of running along them. A vertex is where two tracks cross; its index is
/// `row * columns + column`.
class TrackGrid {
 public:
  static constexpr float closed = 1e30f;

  TrackGrid(const Scene& scene, const Search& search, const Rectangle& window);

  bool too_large() const { return too_large_; }
  std::size_t columns() const { return xs_.size(); }
  std::size_t rows() const { return ys_.size(); }
  std::size_t size() const { return xs_.size() * ys_.size(); }
  Point point(std::size_t vertex) const { return {xs_[vertex % xs_.size()], ys_[vertex / xs_.size()]}; }
  std::size_t vertex(Point it) const;

  /// Price of the step to the right and of the one downward.
  float across(std::size_t vertex) const { return across_[vertex]; }
  float down(std::size_t vertex) const { return down_[vertex]; }
  /// Another net's line passes here: no way bends on it.
  bool may_bend(std::size_t vertex) const { return !(flags_[vertex] & passed); }
  bool is_end(std::size_t vertex) const { return flags_[vertex] & target && may_bend(vertex); }
  const Rectangle& ends() const { return ends_; }  ///< around all that the search may reach

 private:
  enum Flag : std::uint8_t { passed = 1, target = 2 };

  void make_tracks(const Search& search, const Rectangle& window, const std::vector<std::size_t>& things);
  void enter(const Thing& thing, const Search& search);
  void close(const Rectangle& room);
  void shade(const Rectangle& room, float price);
  void enter_line(const Rectangle& line, float crossing_price);
  void enter_own_leg(const Thing& leg);
  void cross(const Rectangle& line, float crossing_price);
  void mark_ends(const Search& search);

  const Scene& scene_;
  std::vector<double> xs_;
  std::vector<double> ys_;
  std::vector<float> across_;
  std::vector<float> down_;
  std::vector<std::uint8_t> flags_;
  Rectangle ends_;
  bool too_large_ = false;
};

}  // namespace kinemo::views::layout
