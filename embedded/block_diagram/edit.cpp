#include "embedded/block_diagram/edit.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/vn_id.hpp"

namespace embedded::block_diagram {

namespace {

void setAll(GTBlock& block, const ParameterTexts& parameters) {
  for (const auto& [name, text] : parameters) setParameter(block, name, text);
}

/// The texts were the block's own before, so what its check has to say of them isn't the error to tell.
void restore(GTBlock& block, const ParameterTexts& before) {
  for (auto entry = before.rbegin(); entry != before.rend(); ++entry) setParameter(block, entry->first, entry->second);
  try {
    refresh(block);
  } catch (const kmf::Exception&) {
    // As it was before the edit.
  }
}

}  // namespace

ParameterTexts textsNow(const GTBlock& block, const ParameterTexts& parameters) {
  ParameterTexts texts;
  texts.reserve(parameters.size());
  for (const auto& entry : parameters) texts.emplace_back(entry.first, parameter(block, entry.first));
  return texts;
}

void checkParameter(const GTBlock& block, const std::string& name, const ustring& text) {
  const GTMask* mask = block.host().mask.get();
  if (mask && mask->kind->find(name) >= 0) return;
  if (block.host().dialog.find(name) >= 0) return;
  if (!checkHostParameter(block, name, text)) throwUnknownParameter(block, name, parameterNames(block));
}

void setParameters(GTBlock& block, const ParameterTexts& parameters) {
  for (const auto& [name, text] : parameters) checkParameter(block, name, text);
  const ParameterTexts before = textsNow(block, parameters);
  setAll(block, parameters);
  try {
    refresh(block);
  } catch (...) {
    restore(block, before);
    throw;
  }
}

void checkSettingName(const Diagram& diagram, const std::string& name) {
  if (!kmf::VnId::isLegal(name)) kmf::throw_message("kinemo:host:diagram", "InvalidSetting", name, diagram.name());
}

const std::map<std::string, ustring>& properties(const GTBlock& block) {
  static const std::map<std::string, ustring> none;
  return block.host().extras ? block.host().extras->properties : none;
}

void removeBlock(GTBlock& block) {
  if (isIoPort(block)) takeIoPortAway(block);
  SystemAccess::drop(block);
}

void removeLine(System& system, const Line& line) {
  SystemAccess::dropLine(system, line);
}

void renameLine(System& system, const Line& line, const ustring& name) {
  if (name.empty() && line.ports.size() < 2) return removeLine(system, line);
  for (const auto& own : system.lines()) {
    if (own.get() == &line) own->name = name;
  }
}

}  // namespace embedded::block_diagram
