// The icon of a core block: how it follows the descriptor.

#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_bitmap.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/scripting_runtime/interrupt_mode.hpp"

namespace gl::gti {

namespace {

constexpr char16_t with_border[] = u"KinemoBlockWithBorder";
constexpr char16_t no_border[] = u"KinemoBlockNoBorder";

/// Registers an icon of the service again if it turned the other way so far.
void update_rotation(const ustring& key, bool rotate) {
  IconStyles styles = GTBlockIcon::findResource(key)->styles;
  const ustring wanted = icon_style_flag(rotate);
  ustring& present = styles[u"Rotate"];
  if (present == wanted) return;
  present = wanted;
  GTBlockIcon::registerBlockIconFromResource(key, key, styles);
}

void register_vector_icon(const ustring& key, const BlockDescriptor& descriptor, bool rotate) {
  if (GTBlockIcon::isBlockIconRegistered(key)) return update_rotation(key, rotate);
  GTBlockIcon::registerBlockIconFromResource(key, key, icon_styles(descriptor, rotate));
}

}  // namespace

void CoreBlock::setIconImage(cvArray_tag* image) {
  cvDestroyArray(iconImage_);
  iconImage_ = image;
}

void CoreBlock::updateIcon(const BlockDescriptor& descriptor) {
  const utInterruptMode guard(utInterruptMode::OFF);
  const boost::optional<std::filesystem::path>& icon = descriptor.iconFile();
  if (icon == iconFile_) return;
  if (!icon) {
    // Without an image the old path stays in force, and with it the style name.
    if (!iconImage_) return;
    setIconImage(nullptr);
    iconFile_ = boost::none;
  } else if (is_svg(icon)) {
    // A former bitmap stays on purpose: without the styling switch it is what the block still draws.
    if (icon_styling_switch()) register_vector_icon(path_text(*icon), descriptor, rotateImage_);
    iconFile_ = icon;
  } else {
    updateBitmap(*icon, descriptor.permuteImage());
  }
}

void CoreBlock::updateBitmap(const std::filesystem::path& file, bool permute) {
  if (const cvUniquePtr image = read_icon_bitmap(file)) {
    setIconImage(kept_icon_image(image.get(), permute).release());
    iconFile_ = file;
  } else {
    setIconImage(nullptr);
    iconFile_ = boost::none;
  }
}

bool CoreBlock::isDrawnByIconService() const {
  return is_svg(iconFile_) && icon_styling_switch();
}

void CoreBlock::setIconPortLabels(IconData& icon) const {
  for (std::size_t i = 0; i < leftPorts_.size(); ++i)
    icon.setPortLabel(GT_ICON_LEFT, static_cast<int>(i), leftPorts_[i].label(), ustring());
  for (std::size_t i = 0; i < rightPorts_.size(); ++i)
    icon.setPortLabel(GT_ICON_RIGHT, static_cast<int>(i), rightPorts_[i].label(), ustring());
}

void CoreBlock::getIconStyleName(gtsvString& out) const {
  if (isDrawnByIconService()) {
    out = gtsvString(path_text(*iconFile_));
  } else {
    const bool bordered = descriptor().enableFrame() || !iconFile_;
    out = gtsvString(bordered ? with_border : no_border);
  }
}

}  // namespace gl::gti
