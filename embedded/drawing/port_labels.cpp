#include "embedded/drawing/port_labels.hpp"

#include "embedded/drawing/short_text.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::drawing {

namespace {

constexpr double least_share = 0.4;  // smaller ones can't be read
/// Lines of text may stand closer than their height, which has room above and below the letters.
constexpr double letters_in_height = 0.9;

using Labels = std::vector<PortLabel>;

bool at_left_or_right(const PortLabel& label) {
  return label.place.away_x != 0;
}

bool same_side(const PortLabel& a, const PortLabel& b) {
  return a.place.away_x == b.place.away_x && a.place.away_y == b.place.away_y;
}

/// Along the edge, from one port of a side to the next; the length of the edge where there is no other.
double pitch(const Labels& labels, const PortLabel& of, double edge) {
  std::vector<double> places;
  for (const PortLabel& label : labels) {
    if (same_side(label, of)) places.push_back(at_left_or_right(of) ? label.place.y : label.place.x);
  }
  std::sort(places.begin(), places.end());
  double least = edge;
  for (std::size_t i = 1; i < places.size(); ++i) least = std::min(least, places[i] - places[i - 1]);
  return least;
}

double longest(const Labels& labels, int away_x, const MeasureText& measure) {
  double width = 0;
  for (const PortLabel& label : labels) {
    if (label.place.away_x == away_x) width = std::max(width, measure(label.text, label.share).width);
  }
  return width;
}

class Fitter {
 public:
  Fitter(Labels labels, const GTBounds& bounds, const MeasureText& measure)
      : labels_(std::move(labels)),
        width_(static_cast<double>(bounds.right) - bounds.left),
        height_(static_cast<double>(bounds.bottom) - bounds.top),
        measure_(measure) {}

  Labels fit() {
    shrink();
    const double left = longest(labels_, -1, measure_);
    const double right = longest(labels_, 1, measure_);
    const double above = pitch_of(0, -1);
    const double below = pitch_of(0, 1);
    for (PortLabel& label : labels_) {
      if (label.place.away_x < 0) shorten(label, room_beside(right));
      if (label.place.away_x > 0) shorten(label, room_beside(left));
      if (label.place.away_x == 0) shorten(label, (label.place.away_y < 0 ? above : below) - port_label_distance);
    }
    std::erase_if(labels_, [](const PortLabel& label) { return label.text.empty(); });
    return std::move(labels_);
  }

 private:
  double pitch_of(int away_x, int away_y) const {
    const auto any = std::find_if(labels_.begin(), labels_.end(), [&](const PortLabel& it) {
      return it.place.away_x == away_x && it.place.away_y == away_y;
    });
    return any == labels_.end() ? 0 : pitch(labels_, *any, away_x != 0 ? height_ : width_);
  }

  /// All labels of a side alike, to the height that each of them has.
  void shrink() {
    const double line = letters_in_height * measure_(u"Mg", port_label_share).height;
    const double half = height_ / 2 - port_label_distance;
    const double left = pitch_of(-1, 0);
    const double right = pitch_of(1, 0);
    for (PortLabel& label : labels_) {
      const double room = !at_left_or_right(label) ? half : label.place.away_x < 0 ? left : right;
      label.share = port_label_share * std::min(1.0, room / line);
      if (label.share < least_share) label.text.clear();
    }
  }

  double room_beside(double other) const {
    const double all = width_ - 2 * port_label_distance;
    if (other == 0) return all;
    const double between = port_label_distance;
    return std::max((all - between) / 2, all - between - other);
  }

  void shorten(PortLabel& label, double room) const {
    label.text = fitted(label.text, room, [&](const ustring& text) { return measure_(text, label.share).width; });
  }

  Labels labels_;
  double width_;
  double height_;
  const MeasureText& measure_;
};

}  // namespace

std::vector<PortLabel> fit_port_labels(std::vector<PortLabel> labels, const GTBounds& bounds,
                                       const MeasureText& measure) {
  return Fitter(std::move(labels), bounds, measure).fit();
}

}  // namespace embedded::drawing
