// Parameters of a block, wherever they are kept: mask, dialog, host; and free properties.

#include "embedded/block_diagram/block_parameters.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

namespace embedded::block_diagram {

namespace {

/// The empty text takes the property away.
void setComponentProperty(GTBlock& block, const std::string& name, const ustring& text) {
  if (text.empty()) {
    removeProperty(block, name);
  } else {
    setProperty(block, name, text);
  }
}

}  // namespace

void setParameter(GTBlock& block, const std::string& name, const ustring& text) {
  GTMask* mask = block.host().mask.get();
  const int inMask = mask ? mask->kind->find(name) : -1;
  if (inMask >= 0) {
    mask->setText(static_cast<std::size_t>(inMask), text);
    return;
  }
  const int inDialog = block.host().dialog.find(name);
  if (inDialog >= 0) {
    setDialogText(block, inDialog, kmf::ustring_to_utf8_string(text));
    return;
  }
  if (setHostParameter(block, name, text)) return;
  if (!canBeComponentProperty(block, name, isOpaque(block))) {
    throwUnknownParameter(block, name, parameterNames(block));
  }
  setComponentProperty(block, name, text);
}

ustring parameter(const GTBlock& block, const std::string& name) {
  const GTMask* mask = block.host().mask.get();
  const int inMask = mask ? mask->kind->find(name) : -1;
  if (inMask >= 0) return mask->text(static_cast<std::size_t>(inMask)).text();
  const int inDialog = block.host().dialog.find(name);
  if (inDialog >= 0) return kmf::utf8_string_to_ustring(dialogText(block, inDialog));
  ustring text;
  if (!hostParameter(block, name, text)) throwUnknownParameter(block, name, parameterNames(block));
  return text;
}

std::vector<std::string> parameterNames(const GTBlock& block) {
  std::vector<std::string> names;
  if (const GTMask* mask = block.host().mask.get()) {
    for (const GTMaskParameter& parameter : mask->kind->parameters()) names.push_back(parameter.name);
  }
  const GTDialogInfo& dialog = block.host().dialog;
  for (int i = 0; i < dialog.count(); ++i) {
    if (const GTPrmDesc* descriptor = dialog.descriptor(i)) names.push_back(descriptor->getName());
  }
  for (std::string& name : hostParameterNames(block)) names.push_back(std::move(name));
  return names;
}

bool canBeComponentProperty(const GTBlock& block, const std::string& name, bool opaque) {
  if (name == "Position" || name == "Rotation" || name == "Mirror") return false;
  return (opaque && kmf::VnId::isLegal(name)) || properties(block).count(name) != 0;
}

ustring componentProperty(const GTBlock& block, const std::string& name) {
  const auto found = properties(block).find(name);
  return found == properties(block).end() ? ustring() : found->second;
}

void setProperty(GTBlock& block, const std::string& name, const ustring& text) {
  block.host().makeExtras().properties[name] = text;
}

void refresh(GTBlock& block) {
  block.checkDialogParameters(0);
}

}  // namespace embedded::block_diagram
