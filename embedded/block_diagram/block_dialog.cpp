// Texts of a block's dialog parameters. A placed block shares its prototype's until one is set.

#include "embedded/block_diagram/block_data.hpp"
#include "platform/foundation/exception.hpp"

namespace embedded::block_diagram {

namespace {

const char* defaultText(const GTPrmDesc* descriptor) {
  return descriptor && descriptor->type() == GTPrmDesc::BOOLEAN ? "off" : "";
}

/// Number of a descriptor in the block's dialog; -1 when it isn't one of them.
int indexOf(const GTBlock& block, const GTPrmDesc* descriptor) {
  if (!descriptor) return -1;
  const GTDialogInfo& dialog = block.host().dialog;
  for (int i = 0; i < dialog.count(); ++i) {
    if (dialog.descriptor(i) == descriptor) return i;
  }
  return dialog.find(descriptor->getName());
}

}  // namespace

const char* dialogText(const GTBlock& block, int index) {
  const GTBlockHostData& data = block.host();
  if (index < 0 || index >= data.dialog.count()) return nullptr;
  const auto i = static_cast<std::size_t>(index);
  if (data.dialogTexts && i < data.dialogTexts->size()) return (*data.dialogTexts)[i].c_str();
  return defaultText(data.dialog.descriptor(index));
}

void setDialogText(GTBlock& block, int index, const std::string& text) {
  GTBlockHostData& data = block.host();
  std::vector<std::string> texts = data.dialogTexts ? *data.dialogTexts : std::vector<std::string>();
  while (texts.size() <= static_cast<std::size_t>(index))
    texts.emplace_back(defaultText(data.dialog.descriptor(static_cast<int>(texts.size()))));
  texts[static_cast<std::size_t>(index)] = text;
  data.dialogTexts = std::make_shared<const std::vector<std::string>>(std::move(texts));
}

}  // namespace embedded::block_diagram

using namespace embedded::block_diagram;

GTDialogInfo* GTBlock::getDialogInfo() const {
  return &host_->dialog;
}

gtParam_tag* GTBlock::getGrEDP(int index) const {
  const char* text = dialogText(*this, index);
  if (!text) return nullptr;
  gtParam_tag& parameter = host_->makeExtras().evaluated[index];
  parameter.text = text;
  return &parameter;
}

gtParam_tag* GTBlock::getGrEDP(const GTPrmDesc* parameter) const {
  return getGrEDP(indexOf(*this, parameter));
}

void GTBlock::setGrPrmValue(const GTPrmDesc* parameter, const char* value) {
  const int index = indexOf(*this, parameter);
  if (index < 0) {
    kmf::throw_message("kinemo:host:diagram", "UnknownParameter", parameter ? parameter->getName() : std::string(),
                       getFullPath(true), "");
  }
  setDialogText(*this, index, value ? value : "");
}

void GTBlock::setGrParamValue(std::size_t index, const char* value) {
  if (index >= static_cast<std::size_t>(host_->dialog.count()))
    kmf::throw_message("kinemo:host:diagram", "UnknownParameter", std::to_string(index), getFullPath(true), "");
  setDialogText(*this, static_cast<int>(index), value ? value : "");
}

const char* GTBlock::getGrPrmValue(const GTPrmDesc* parameter) const {
  return dialogText(*this, indexOf(*this, parameter));
}

const char* GTBlock::getGrParamValue(std::size_t index, bool) const {
  return index < static_cast<std::size_t>(host_->dialog.count()) ? dialogText(*this, static_cast<int>(index)) : nullptr;
}
