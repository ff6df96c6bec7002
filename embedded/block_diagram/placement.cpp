#include "embedded/block_diagram/placement.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace embedded::block_diagram {

namespace {

const ustring* property(const GTBlock& block, const char* name) {
  if (!block.host().extras) return nullptr;
  const auto found = block.host().extras->properties.find(name);
  return found == block.host().extras->properties.end() ? nullptr : &found->second;
}

/// Far enough for any diagram, near enough for differences to stay in range.
int wholeUnits(double value) {
  constexpr double far = 1e9;
  return static_cast<int>(std::lround(std::clamp(value, -far, far)));
}

/// Turned with the clock by a quarter, in a square of side 1.
PortPlace turned(const PortPlace& place) {
  return {1 - place.y, place.x, -place.away_y, place.away_x};
}

/// Share of the edge in front of a port.
double share(int index, int count) {
  return (2.0 * index + 1.0) / (2.0 * std::max(count, 1));
}

}  // namespace

boost::optional<std::array<double, 4>> edges(const GTBlock& block) {
  const ustring* text = property(block, "Position");
  if (!text) return boost::none;
  std::string digits = kmf::ustring_to_utf8_string(*text);
  std::replace_if(
      digits.begin(), digits.end(), [](char c) { return c == '[' || c == ']' || c == ','; }, ' ');
  std::istringstream in(digits);
  in.imbue(std::locale::classic());
  std::array<double, 4> numbers{};
  for (double& number : numbers) in >> number;
  if (!in) return boost::none;
  return numbers;
}

boost::optional<GTBounds> position(const GTBlock& block) {
  const auto numbers = edges(block);
  if (!numbers) return boost::none;
  const auto [left, top, right, bottom] = *numbers;
  return GTBounds{wholeUnits(left), wholeUnits(top), wholeUnits(right), wholeUnits(bottom)};
}

int rotation(const GTBlock& block) {
  const ustring* text = property(block, "Rotation");
  if (!text) return 0;
  if (*text == u"90") return 90;
  if (*text == u"180") return 180;
  return *text == u"270" ? 270 : 0;
}

bool mirrored(const GTBlock& block) {
  const ustring* text = property(block, "Mirror");
  return text && *text == u"on";
}

PortPlace portPlace(const GTBlock& block, const GTBounds& bounds, bool left, int index) {
  const int count = left ? block.getGrNumLeftConnectionPorts() : block.getGrNumRightConnectionPorts();
  const bool onLeft = left != mirrored(block);
  PortPlace place{onLeft ? 0.0 : 1.0, share(index, count), onLeft ? -1 : 1, 0};
  for (int angle = 0; angle < rotation(block); angle += 90) place = turned(place);
  if (!block.usesPhysicalPortRotation()) (place.away_x != 0 ? place.y : place.x) = share(index, count);
  place.x = bounds.left + place.x * (bounds.right - bounds.left);
  place.y = bounds.top + place.y * (bounds.bottom - bounds.top);
  return place;
}

}  // namespace embedded::block_diagram
