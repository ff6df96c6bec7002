#include "embedded/drawing/icon_look.hpp"

#include "platform/block_diagram/block.hpp"

#include <algorithm>
#include <cstdint>
#include <map>
#include <vector>

namespace embedded::drawing {

namespace {

constexpr GTColor palette[] = {
    {0.00, 0.33, 0.64, -1, 0}, {0.70, 0.11, 0.11, -1, 0}, {0.06, 0.45, 0.20, -1, 0}, {0.44, 0.19, 0.63, -1, 0},
    {0.68, 0.37, 0.00, -1, 0}, {0.00, 0.45, 0.47, -1, 0}, {0.60, 0.10, 0.42, -1, 0}, {0.35, 0.35, 0.10, -1, 0},
};

/// The same on every platform, unlike the standard library's.
std::uint32_t hash(const std::string& text) {
  std::uint32_t value = 2166136261U;  // FNV-1a
  for (const char c : text) value = (value ^ static_cast<unsigned char>(c)) * 16777619U;
  return value ^ value >> 15;
}

std::vector<const gtPort*> ports_of(const GTBlock& block) {
  std::vector<const gtPort*> ports;
  for (int i = 0; i < block.getGrNumLeftConnectionPorts(); ++i) ports.push_back(block.getGrLeftConnectionPort(i));
  for (int i = 0; i < block.getGrNumRightConnectionPorts(); ++i) ports.push_back(block.getGrRightConnectionPort(i));
  return ports;
}

}  // namespace

IconLook look_of(const GTIconResource& resource) {
  const auto is = [&](const char16_t* key, const char16_t* value) {
    const auto found = resource.styles.find(key);
    return found != resource.styles.end() && found->second == value;
  };
  IconLook look;
  look.fit = is(u"Resize", u"FitToBlock");
  look.proportional = !is(u"Geometric", u"Off");
  look.crop = is(u"PreAdjustSize", u"CropToContent");
  look.thin_strokes = is(u"StrokeScalingOnResize", u"NonScaling");
  look.normal_strokes = is(u"PreAdjustStrokeWidth", u"Normalized");
  look.constant_text = is(u"TextScalingOnResize", u"Constant");
  look.clip = !is(u"Clipping", u"None");
  look.frame = is(u"Frame", u"On");
  look.rotate = is(u"Rotate", u"On");
  look.port_color = is(u"Foreground", u"PortStyled");
  return look;
}

GTColor port_color(const std::string& type) {
  if (type.empty()) return {0.0, 0.0, 0.0, -1, 0};
  return palette[hash(type) % std::size(palette)];
}

boost::optional<GTColor> majority_color(const GTBlock& block) {
  const std::vector<const gtPort*> ports = ports_of(block);
  if (ports.empty()) return boost::none;
  std::map<std::string, int> counts;
  for (const gtPort* port : ports) ++counts[gtGetPortDomainPortType(port)];
  const auto fewer = [&](const gtPort* a, const gtPort* b) {
    return counts[gtGetPortDomainPortType(a)] < counts[gtGetPortDomainPortType(b)];
  };
  return port_color(gtGetPortDomainPortType(*std::max_element(ports.begin(), ports.end(), fewer)));
}

}  // namespace embedded::drawing
