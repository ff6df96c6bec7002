// How a core block draws itself where the host's icon service doesn't.

#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_text.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/block_diagram/window.hpp"
#include "platform/scripting_runtime/interrupt_mode.hpp"

namespace gl::gti {

namespace {

constexpr GTColor label_color{0.0, 1.0, 0.0, -1, 0};

/// Another foreground for a scope.
class ForegroundGuard {
 public:
  ForegroundGuard(GTWindow* window, const GTColor* before, const GTColor* during) : window_(window), before_(before) {
    gt_wm_SetFGColorPtr(window_, during);
  }
  ForegroundGuard(const ForegroundGuard&) = delete;
  ForegroundGuard& operator=(const ForegroundGuard&) = delete;
  ~ForegroundGuard() { gt_wm_SetFGColorPtr(window_, before_); }

 private:
  GTWindow* window_;
  const GTColor* before_;
};

}  // namespace

void CoreBlock::drawIcon(GTWindow* window, const GTBounds& bounds) const {
  const utInterruptMode guard(utInterruptMode::OFF);
  if (isDrawnByIconService()) {
    if (kmdvg_setting("KMDVGLabel") != u"off") return;
  } else if (iconImage_) {
    MaskInterface::renderBlockImageByLocation(window, this, iconImage_, bounds, rotateImage_, GT_IMAGE_CENTER);
  } else {
    blk_frame_and_fill_icon(this, window, bounds);
    gt_wm_SetTextAlignment(window, GT_ALIGN_CENTER, GT_ALIGN_BOTTOM);
    draw_icon_text(window, bounds, blockText_);
    gt_wm_SetTextAlignment(window, GT_ALIGN_LEFT, GT_ALIGN_BASELINE);
  }
  drawPortLabels(window, bounds);
}

void CoreBlock::drawPortLabels(GTWindow* window, const GTBounds& bounds) const {
  const ForegroundGuard foreground(window, getGrForegroundColorPtr(), &label_color);
  for (std::size_t i = 0; i < leftPorts_.size(); ++i)
    DrawLeftConnectionPortLabel(window, bounds, static_cast<int>(i), leftPorts_[i].label());
  for (std::size_t i = 0; i < rightPorts_.size(); ++i)
    DrawRightConnectionPortLabel(window, bounds, static_cast<int>(i), rightPorts_[i].label());
}

}  // namespace gl::gti
