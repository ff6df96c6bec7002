#include "embedded/block_diagram/edit.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

namespace embedded::block_diagram {

namespace {

/// Whether the mask or the dialog has a parameter of the name, which may take any text.
bool isShown(const GTBlock& block, const std::string& name) {
  const GTMask* mask = block.host().mask.get();
  return (mask && mask->kind->find(name) >= 0) || block.host().dialog.find(name) >= 0;
}

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
  for (const auto& entry : parameters) {
    const std::string& name = entry.first;
    ustring text;
    if (isShown(block, name)) {
      text = parameter(block, name);
    } else if (!hostParameter(block, name, text)) {
      text = componentProperty(block, name);
    }
    texts.emplace_back(name, std::move(text));
  }
  return texts;
}

void checkParameters(const GTBlock& block, const ParameterTexts& parameters) {
  bool opaque = isOpaque(block);
  for (const auto& [name, text] : parameters) {
    if (isShown(block, name)) continue;
    if (!checkHostParameter(block, name, text)) {
      if (canBeComponentProperty(block, name, opaque)) continue;
      throwUnknownParameter(block, name, parameterNames(block));
    }
    if (name == "Opaque") opaque = kmf::lower(kmf::ustring_to_utf8_string(text)) == "on";
  }
}

void setParameters(GTBlock& block, const ParameterTexts& parameters) {
  checkParameters(block, parameters);
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

void removeProperty(GTBlock& block, const std::string& name) {
  if (block.host().extras) block.host().extras->properties.erase(name);
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
