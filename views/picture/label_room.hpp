// What is drawn where in one system, for labels that look for a place.
#pragma once

#include "views/layout/layout.hpp"
#include "views/layout/scene.hpp"

#include <vector>

namespace kinemo::views::picture {

/// What a label would cover. Over lines it can be read on a ground of its own, over blocks and texts it can't.
struct Covered {
  int solids = 0;  ///< blocks and texts
  int lines = 0;

  bool nothing() const { return solids == 0 && lines == 0; }
};

/// Lives while the labels of one drawing are placed.
class LabelRoom {
 public:
  /// `boxes` are those of the drawing.
  LabelRoom(const std::vector<layout::Box>& boxes, const layout::Drawing& drawing);

  /// Texts keep two units clear of what is at their sides.
  Covered covered(const layout::Rectangle& label) const;
  /// Of a line that would be drawn: texts and blocks that it runs through, and lines that it runs along.
  int obstacles(layout::Point from, layout::Point to) const;

  void add_text(const layout::Rectangle& place);
  /// Stubs, with their labels, by net and place in the route.
  void add_stub(std::size_t net, std::size_t stub, const layout::Stub& drawn);
  void remove_stub(std::size_t net, std::size_t stub);

 private:
  struct StubThings {
    std::size_t line = 0;
    std::size_t label = 0;
  };

  layout::Scene scene_;
  std::vector<std::vector<StubThings>> stubs_;
};

}  // namespace kinemo::views::picture
