#include "embedded/drawing/draw_block.hpp"

#include "embedded/block_diagram/placement.hpp"
#include "embedded/drawing/vector_icon.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"

namespace embedded::drawing {

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr char16_t no_border[] = u"KinemoBlockNoBorder";

/// The icon in the bounds, mirrored and turned with the block where its style says so.
void draw_graphics(cairo_t* context, VectorIcon& icon, const IconLook& look, const GTBlock& block, Size room) {
  const int angle = look.rotate ? block_diagram::rotation(block) : 0;
  const Size upright = angle % 180 == 0 ? room : Size{room.height, room.width};
  const SavedContext saved(context);
  cairo_translate(context, room.width / 2, room.height / 2);
  cairo_rotate(context, angle * pi / 180);
  if (look.rotate && block_diagram::mirrored(block)) cairo_scale(context, -1, 1);
  cairo_translate(context, -upright.width / 2, -upright.height / 2);
  icon.draw(context, upright, look, look.port_color ? majority_color(block) : boost::none);
}

void draw_labels(Canvas& canvas, const GTBlock& block, const GTBounds& bounds) {
  IconData data;
  block.setIconPortLabels(data);
  for (const IconData::PortLabel& label : data.portLabels()) {
    const ustring text = label.second.empty() ? label.label : label.label + u" " + label.second;
    if (!text.empty()) canvas.drawLeadLabel(block, bounds, label.side == GT_ICON_LEFT, label.index, text);
  }
}

/// The part of the icon service. An icon that can't be drawn leaves a frame.
void draw_by_service(Canvas& canvas, const GTIconResource& resource, const GTBlock& block, const GTBounds& bounds) {
  const IconLook look = look_of(resource);
  VectorIcon* icon = canvas.vectorIcon(kmf::ustring_to_local_encoded_string(resource.file));
  if (look.frame || !icon) canvas.frameAndFill(block, bounds);
  const Size room{static_cast<double>(bounds.right), static_cast<double>(bounds.bottom)};
  if (icon) draw_graphics(canvas.context(), *icon, look, block, room);
  if (kmdvg_setting("KMDVGLabel") != u"off") draw_labels(canvas, block, bounds);
}

void draw(Canvas& canvas, const GTBlock& block, const GTBounds& bounds) {
  gtsvString style;
  block.getIconStyleName(style);
  const GTIconResource* resource = GTBlockIcon::findResource(style.text());
  if (resource) draw_by_service(canvas, *resource, block, bounds);
  canvas.drawWithFittedLabels(bounds, [&] { block.drawIcon(&canvas, bounds); });
  // Over what the icon has put there. An icon that nobody registered leaves its block a frame.
  if (!resource && style.text() != no_border) canvas.drawFrame(bounds);
}

}  // namespace

void draw_block(Canvas& canvas, const GTBlock& block, const GTBounds& bounds) {
  // Blocks see bounds that begin at 0: positions of texts are cut to 16 bits, and diagrams are larger.
  const GTBounds own{0, 0, bounds.right - bounds.left, bounds.bottom - bounds.top};
  if (own.right <= 0 || own.bottom <= 0) return;
  canvas.drawAt({static_cast<double>(bounds.left), static_cast<double>(bounds.top)}, [&] { draw(canvas, block, own); });
}

}  // namespace embedded::drawing
