#include "views/layout/track_grid.hpp"

#include <algorithm>
#include <cmath>

namespace kinemo::views::layout {

namespace {

constexpr std::size_t most_vertices = 400'000;
/// A window with more tracks than this has tracks only beside things.
constexpr double most_even_tracks = 600;

constexpr double box_clearance = 4;
constexpr double box_shade = 9;
constexpr double text_clearance = 2;
constexpr double text_shade = 4;
constexpr double line_clearance = 1;
constexpr double line_shade = 9;
constexpr float crossing_of_line = 45;
constexpr float crossing_of_leg = 80;
constexpr float crossing_of_stub = 200;

/// Indices of the tracks in the open interval.
std::pair<std::size_t, std::size_t> tracks_between(const std::vector<double>& tracks, double from, double to) {
  const auto first = std::upper_bound(tracks.begin(), tracks.end(), from);
  const auto last = std::lower_bound(first, tracks.end(), to);
  return {static_cast<std::size_t>(first - tracks.begin()), static_cast<std::size_t>(last - tracks.begin())};
}

/// Indices of the steps (from one track to the next) that share more than a point with the open interval.
std::pair<std::size_t, std::size_t> steps_between(const std::vector<double>& tracks, double from, double to) {
  auto [first, last] = tracks_between(tracks, from, to);
  if (first > 0) --first;
  last = std::min(last, tracks.size() - 1);
  return {first, std::max(first, last)};
}

void tidy_tracks(std::vector<double>& tracks, double least, double most) {
  std::erase_if(tracks, [&](double it) { return it < least || it > most; });
  std::sort(tracks.begin(), tracks.end());
  tracks.erase(std::unique(tracks.begin(), tracks.end()), tracks.end());
}

void add_even_tracks(std::vector<double>& tracks, double from, double to, double step) {
  for (double it = std::ceil(from / step) * step; it <= to; it += step) tracks.push_back(it);
}

}  // namespace

TrackGrid::TrackGrid(const Scene& scene, const Search& search, const Rectangle& window) : scene_(scene) {
  const std::vector<std::size_t> things = scene.near(grown(window, box_shade));
  make_tracks(search, window, things);
  if (size() > most_vertices) {
    too_large_ = true;
    return;
  }
  across_.resize(size());
  down_.resize(size());
  flags_.resize(size());
  for (std::size_t i = 0; i < size(); ++i) {
    const std::size_t column = i % columns();
    const std::size_t row = i / columns();
    across_[i] = column + 1 < columns() ? static_cast<float>(xs_[column + 1] - xs_[column]) : closed;
    down_[i] = row + 1 < rows() ? static_cast<float>(ys_[row + 1] - ys_[row]) : closed;
  }
  for (std::size_t it : things) enter(scene[it], search);
  mark_ends(search);
}

void TrackGrid::make_tracks(const Search& search, const Rectangle& window, const std::vector<std::size_t>& things) {
  const auto add = [&](const Rectangle& it) {
    xs_.insert(xs_.end(), {it.x, right(it)});
    ys_.insert(ys_.end(), {it.y, bottom(it)});
  };
  add(spanned(search.from, search.from));
  for (const Point& it : search.ends) add(spanned(it, it));
  for (const Rectangle& it : search.lines) add(it);
  const auto even = [&](std::vector<double>& tracks, double from, double to) {
    if (to - from <= most_even_tracks * search.step) return add_even_tracks(tracks, from, to, search.step);
    for (std::size_t it : things) {
      const Rectangle room = grown(scene_[it].room, grid_step);
      const bool is_x = &tracks == &xs_;
      tracks.insert(tracks.end(), {is_x ? room.x : room.y, is_x ? right(room) : bottom(room)});
    }
  };
  even(xs_, window.x, right(window));
  even(ys_, window.y, bottom(window));
  tidy_tracks(xs_, window.x, right(window));
  tidy_tracks(ys_, window.y, bottom(window));
}

std::size_t TrackGrid::vertex(Point it) const {
  const auto x = std::lower_bound(xs_.begin(), xs_.end(), it.x);
  const auto y = std::lower_bound(ys_.begin(), ys_.end(), it.y);
  if (x == xs_.end() || y == ys_.end() || *x != it.x || *y != it.y) return size();
  return static_cast<std::size_t>(y - ys_.begin()) * columns() + static_cast<std::size_t>(x - xs_.begin());
}

void TrackGrid::enter(const Thing& thing, const Search& search) {
  switch (thing.kind) {
    case Kind::box:
      close(grown(thing.room, box_clearance));
      shade(grown(thing.room, box_shade), 1);
      break;
    case Kind::text:
      close(grown(thing.room, text_clearance));
      shade(grown(thing.room, text_shade), 1);
      break;
    case Kind::line:
      if (thing.net != search.net) enter_line(thing.room, crossing_of_line);
      break;
    case Kind::stub:
      enter_line(thing.room, crossing_of_stub);
      break;
    case Kind::leg:
      thing.net == search.net ? enter_own_leg(thing) : enter_line(thing.room, crossing_of_leg);
      break;
  }
}

/// No way runs through the inside.
void TrackGrid::close(const Rectangle& room) {
  shade(room, closed);
}

/// Ways along the inside cost more for each unit.
void TrackGrid::shade(const Rectangle& room, float price) {
  const auto [left, right_end] = tracks_between(xs_, room.x, right(room));
  const auto [top, bottom_end] = tracks_between(ys_, room.y, bottom(room));
  const auto [first_step, last_step] = steps_between(xs_, room.x, right(room));
  const auto [first_drop, last_drop] = steps_between(ys_, room.y, bottom(room));
  for (std::size_t row = top; row < bottom_end; ++row) {
    for (std::size_t i = first_step; i < last_step; ++i) {
      across_[row * columns() + i] += price * static_cast<float>(xs_[i + 1] - xs_[i]);
    }
  }
  for (std::size_t i = first_drop; i < last_drop; ++i) {
    for (std::size_t column = left; column < right_end; ++column) {
      down_[i * columns() + column] += price * static_cast<float>(ys_[i + 1] - ys_[i]);
    }
  }
}

/// Another net's line: ways cross it, but don't run on it, end on it, or touch its ends.
void TrackGrid::enter_line(const Rectangle& line, float crossing_price) {
  const Rectangle core = grown(line, line_clearance);
  const bool lies = line.width >= line.height;
  const auto [left, right_end] = tracks_between(xs_, core.x, right(core));
  const auto [top, bottom_end] = tracks_between(ys_, core.y, bottom(core));
  for (std::size_t row = top; row < bottom_end; ++row) {
    for (std::size_t column = left; column < right_end; ++column) flags_[row * columns() + column] |= passed;
  }
  if (lies) {
    const auto [first, last] = steps_between(xs_, core.x, right(core));
    for (std::size_t row = top; row < bottom_end; ++row) {
      for (std::size_t i = first; i < last; ++i) across_[row * columns() + i] = closed;
    }
  } else {
    const auto [first, last] = steps_between(ys_, core.y, bottom(core));
    for (std::size_t i = first; i < last; ++i) {
      for (std::size_t column = left; column < right_end; ++column) down_[i * columns() + column] = closed;
    }
  }
  cross(line, crossing_price);
}

/// Prices of crossing the line and of running beside it.
void TrackGrid::cross(const Rectangle& line, float crossing_price) {
  const bool lies = line.width >= line.height;
  const std::vector<double>& along = lies ? xs_ : ys_;
  const std::vector<double>& over = lies ? ys_ : xs_;
  const double begin = lies ? line.x : line.y;
  const double end = lies ? right(line) : bottom(line);
  const double at = lies ? line.y : line.x;
  const auto index = [&](std::size_t on_along, std::size_t on_over) {
    return lies ? on_over * columns() + on_along : on_along * columns() + on_over;
  };
  std::vector<float>& beside = lies ? across_ : down_;
  std::vector<float>& through = lies ? down_ : across_;
  const auto [first_beside, last_beside] = tracks_between(over, at - line_shade, at + line_shade);
  const auto [first_step, last_step] = steps_between(along, begin, end);
  for (std::size_t i = first_beside; i < last_beside; ++i) {
    const float nearness = std::abs(over[i] - at) < line_shade / 2 ? 4 : 2;
    for (std::size_t k = first_step; k < last_step; ++k) {
      beside[index(k, i)] += nearness * static_cast<float>(along[k + 1] - along[k]);
    }
  }
  const auto [first_over, last_over] = steps_between(over, at - line_clearance, at + line_clearance);
  const auto [first, last] = tracks_between(along, begin - line_clearance, end + line_clearance);
  const float price = crossing_price / static_cast<float>(std::max<std::size_t>(last_over - first_over, 1));
  for (std::size_t i = first_over; i < last_over; ++i) {
    for (std::size_t k = first; k < last; ++k) {
      const bool at_end = along[k] < begin + line_clearance || along[k] > end - line_clearance;
      through[index(k, i)] += at_end ? closed : price;
    }
  }
}

/// Joined at its outer end only.
void TrackGrid::enter_own_leg(const Thing& leg) {
  constexpr double cut = 2 * line_clearance;
  Rectangle inner = leg.room;
  (horizontal(leg.away) ? inner.width : inner.height) -= cut;
  if (inner.width < 0 || inner.height < 0) return;
  if (leg.away == Direction::left) inner.x += cut;
  if (leg.away == Direction::up) inner.y += cut;
  enter_line(inner, crossing_of_leg);
}

void TrackGrid::mark_ends(const Search& search) {
  bool any = false;
  const auto reach = [&](const Rectangle& it) {
    ends_ = any ? united(ends_, it) : it;
    any = true;
  };
  for (const Point& it : search.ends) {
    const std::size_t at = vertex(it);
    if (at >= size()) continue;
    flags_[at] |= target;
    reach(spanned(it, it));
  }
  for (const Rectangle& it : search.lines) {
    const Rectangle core = grown(it, 0.01);
    const auto [left, right_end] = tracks_between(xs_, core.x, right(core));
    const auto [top, bottom_end] = tracks_between(ys_, core.y, bottom(core));
    for (std::size_t row = top; row < bottom_end; ++row) {
      for (std::size_t column = left; column < right_end; ++column) {
        flags_[row * columns() + column] |= target;
        reach(spanned({xs_[column], ys_[row]}, {xs_[column], ys_[row]}));
      }
    }
  }
}

}  // namespace kinemo::views::layout
