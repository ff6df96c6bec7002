#pragma once

// What lines have to go around, found by place.

#include <cstdint>
#include <unordered_map>

#include "views/layout/geometry.hpp"

namespace kinemo::views::layout {

inline constexpr std::size_t no_net = static_cast<std::size_t>(-1);

enum class Kind {
  box,
  text,
  line,
  stub,  ///< the line of one; others cross it only where they have to
  leg,   ///< the beginning of a line at its pin: joined only at its outer end
};

struct Thing {
  Kind kind = Kind::box;
  Rectangle room;  ///< of a line: without width or height
  std::size_t net = no_net;
  Direction away = Direction::right;  ///< of a leg: where its outer end is
  bool alive = true;
};

/// Things in squares of a hundred units, so that those of a window are found without asking all others.
class Scene {
 public:
  std::size_t add(const Thing& thing);
  void remove(std::size_t thing) { things_[thing].alive = false; }
  const Thing& operator[](std::size_t thing) const { return things_[thing]; }

  /// The things that touch the window, in the order in which they were added.
  std::vector<std::size_t> near(const Rectangle& window) const;

 private:
  static std::uint64_t key(std::int64_t column, std::int64_t row) {
    return static_cast<std::uint64_t>(column) << 32 ^ (static_cast<std::uint64_t>(row) & 0xffffffffu);
  }

  std::vector<Thing> things_;
  std::vector<std::size_t> large_;
  std::unordered_map<std::uint64_t, std::vector<std::size_t>> squares_;
};

}  // namespace kinemo::views::layout
