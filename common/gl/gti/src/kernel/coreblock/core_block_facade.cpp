#include "common/gl/gti/export/core_block_facade.hpp"

#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "platform/block_diagram/dialog.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/exception.hpp"

#include <sstream>

namespace gl::gti {

namespace {

/// Text of the parameter `i` of the block's nearest mask.
ustring mask_value(const GTBlock* block, const GTDialogInfo* dialog, int i) {
  constexpr int boolean_type = 1;
  constexpr int string_type = 2;
  switch (gdi_param_type(dialog, i)) {
    case boolean_type:
      return MaskInterface::getMaskDialogValueBoolean(block, i) ? u"on" : u"off";
    case string_type:
      return MaskInterface::getMaskDialogValueString(block, i);
    default:
      return ustring();
  }
}

}  // namespace

double CoreBlockFacade::handle() const {
  return block_->getHandle();
}

gtParam_tag* CoreBlockFacade::evaluatedParamValue(const GTPrmDesc* param) const {
  return block_->getGrEDP(param);
}

gtParam_tag* CoreBlockFacade::evaluatedParamValue(std::size_t index) const {
  return block_->getGrEDP(static_cast<int>(index));
}

const char* CoreBlockFacade::parameterValue(const GTPrmDesc* param) const {
  return block_->getGrPrmValue(param);
}

const char* CoreBlockFacade::parameterValue(std::size_t index) const {
  return block_->getGrParamValue(index, false);
}

void CoreBlockFacade::parameterValue(const GTPrmDesc* param, const char* value) {
  block_->setGrPrmValue(param, value);
}

void CoreBlockFacade::parameterValue(std::size_t index, const char* value) {
  block_->setGrParamValue(index, value);
}

std::string CoreBlockFacade::portName(double portHandle) const {
  return block_->portName(portHandle);
}

void CoreBlockFacade::registerParameters(GTPrmDescList* list) {
  GTDialogInfo* dialog = block_->getDialogInfo();
  sdi_prm_desc_list(dialog, list->getPrmDescs());
  sdi_num_dialog_params(dialog, list->getLength());
}

std::map<std::string, ustring> CoreBlockFacade::maskParams() const {
  std::map<std::string, ustring> result;
  GTMaskReverseHierarchyIterator masks(block_);
  if (!masks.hasNext()) return result;
  const GTDialogInfo* dialog = gt_mask_dialog_info(masks.next());
  const int count = dialog ? gdi_num_dialog_params(dialog) : 0;
  for (int i = 0; i < count; ++i) result.emplace(gdi_prm_desc(dialog, i)->getName(), mask_value(block_, dialog, i));
  return result;
}

CoreBlockFacade handle_to_core_block(double handle) {
  if (CoreBlock* block = coreBlockOf(handle)) return CoreBlockFacade(block);
  std::ostringstream text;
  text << handle;
  kmf::throw_message("kinemo:common:gl:gti:core_block", "HandleNotCoreBlock", text.str());
}

bool is_handle_to_core_block(double handle) {
  return isCoreBlock(handle);
}

}  // namespace gl::gti
