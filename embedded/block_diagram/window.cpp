// The drawing operations of the platform: each goes to the window.

#include "embedded/block_diagram/window.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/block_diagram/mask.hpp"

namespace {

constexpr GTColor black{0.0, 0.0, 0.0, -1, 0};

/// The name inside of a subsystem that a port stands for; empty for ports of other blocks.
ustring outerLabel(const gtPort& port) {
  const GTBlock* ioPort = embedded::block_diagram::ioPortOf(port);
  return ioPort ? ioPort->getGrName() : ustring();
}

}  // namespace

GTWindow::~GTWindow() = default;

int h_center(const GTBounds& bounds) {
  return (bounds.left + bounds.right) / 2;
}
int v_center(const GTBounds& bounds) {
  return (bounds.top + bounds.bottom) / 2;
}

void gt_wm_SetTextAlignment(GTWindow* window, int horizontal, int vertical) {
  window->setTextAlignment(horizontal, vertical);
}
int gt_wm_LineSpacing(GTWindow* window) {
  return window->lineSpacing();
}
void gt_wm_MoveTo(GTWindow* window, int x, int y) {
  window->moveTo(x, y);
}
void gt_wm_DrawString(GTWindow* window, const ustring& text) {
  window->drawString(text);
}
void gt_wm_SetFGColorPtr(GTWindow* window, const GTColor* color) {
  window->setForeground(color ? *color : black);
}
void blk_frame_and_fill_icon(const GTBlock* block, GTWindow* window, const GTBounds& bounds) {
  window->frameAndFill(*block, bounds);
}

void MaskInterface::renderBlockImageByLocation(GTWindow* window, const GTBlock* block, const cvArray_tag* image,
                                               const GTBounds& bounds, bool rotate, int location) {
  window->drawImage(*block, image, bounds, rotate, location);
}

const GTColor* GTBlock::getGrForegroundColorPtr() const {
  return &black;
}
void GTBlock::DrawLeftConnectionPortLabel(GTWindow* window, const GTBounds& bounds, int index,
                                          const ustring& label) const {
  window->drawPortLabel(*this, bounds, true, index, label);
}
void GTBlock::DrawRightConnectionPortLabel(GTWindow* window, const GTBounds& bounds, int index,
                                           const ustring& label) const {
  window->drawPortLabel(*this, bounds, false, index, label);
}

// --- blocks that draw nothing of their own: a frame, and on subsystems the names of the ports inside

void GTBlock::drawIcon(GTWindow* window, const GTBounds& bounds) const {
  window->frameAndFill(*this, bounds);
  for (const gtPort* port : host_->ports) {
    const ustring label = outerLabel(*port);
    if (!label.empty()) window->drawPortLabel(*this, bounds, port->isLeft(), port->index, label);
  }
}

void GTBlock::setIconPortLabels(IconData& icon) const {
  for (const gtPort* port : host_->ports)
    icon.setPortLabel(port->isLeft() ? GT_ICON_LEFT : GT_ICON_RIGHT, port->index, outerLabel(*port), ustring());
}

void GTBlock::getIconStyleName(gtsvString& out) const {
  out = gtsvString(u"KinemoBlockWithBorder");
}
