#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <charconv>

namespace embedded::block_diagram {

namespace {

/// One parameter of subsystems: a flag or a text.
struct SubsystemParameter {
  const char* name;
  bool SubsystemData::*flag;
  ustring SubsystemData::*text;
};

constexpr SubsystemParameter subsystem_parameters[] = {
    {"ActiveVariant", nullptr, &SubsystemData::activeVariant},
    {"Opaque", &SubsystemData::opaque, nullptr},
    {"ReferenceFile", nullptr, &SubsystemData::referenceFile},
    {"TreatAsAtomicUnit", &SubsystemData::atomic, nullptr},
    {"Variant", &SubsystemData::variant, nullptr},
};

const SubsystemParameter* findSubsystemParameter(const std::string& name) {
  for (const SubsystemParameter& parameter : subsystem_parameters) {
    if (name == parameter.name) return &parameter;
  }
  return nullptr;
}

[[noreturn]] void throwInvalid(const GTBlock& block, const std::string& name, const ustring& text, const char* valid) {
  kmf::throw_message("kinemo:host:diagram", "InvalidValue", name, block.getFullPath(true), text, valid);
}

bool switchFrom(const GTBlock& block, const char* name, const ustring& text) {
  const std::string value = kmf::lower(kmf::ustring_to_utf8_string(text));
  if (value != "on" && value != "off") throwInvalid(block, name, text, "on, off");
  return value == "on";
}

void setSubsystemParameter(GTBlock& block, const SubsystemParameter& parameter, const ustring& text) {
  SubsystemData& data = *block.host().subsystem();
  if (parameter.text) {
    data.*parameter.text = text;
  } else {
    data.*parameter.flag = switchFrom(block, parameter.name, text);
  }
  netsChanged(*data.contents);
}

Side sideFrom(const GTBlock& block, const ustring& text) {
  const std::string value = kmf::lower(kmf::ustring_to_utf8_string(text));
  if (value == "left") return Side::Left;
  if (value == "right") return Side::Right;
  throwInvalid(block, "Side", text, "Left, Right");
}

int orderFrom(const GTBlock& block, const ustring& text) {
  const std::string digits = kmf::ustring_to_utf8_string(text);
  int order = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), order);
  if (result.ec != std::errc() || result.ptr != digits.data() + digits.size())
    throwInvalid(block, "Port", text, "a decimal integer");
  return order;
}

bool setIoPortParameter(GTBlock& block, const std::string& name, const ustring& text) {
  const IoPortData& data = *block.host().ioPort();
  if (name == "Port") {
    moveIoPort(block, data.side, orderFrom(block, text));
  } else if (name == "Side") {
    moveIoPort(block, sideFrom(block, text), data.order);
  } else {
    return false;
  }
  return true;
}

}  // namespace

const char* onOff(bool value) {
  return value ? "on" : "off";
}

std::vector<std::string> hostParameterNames(const GTBlock& block) {
  std::vector<std::string> names;
  if (isIoPort(block)) names = {"Port", "Side"};
  if (isSubsystem(block)) {
    for (const SubsystemParameter& parameter : subsystem_parameters) names.emplace_back(parameter.name);
  }
  return names;
}

bool hostParameter(const GTBlock& block, const std::string& name, ustring& text) {
  if (const IoPortData* data = block.host().ioPort()) {
    if (name == "Port") {
      text = kmf::utf8_string_to_ustring(std::to_string(data->order));
    } else if (name == "Side") {
      text = data->side == Side::Left ? u"Left" : u"Right";
    } else {
      return false;
    }
    return true;
  }
  const SubsystemData* data = block.host().subsystem();
  const SubsystemParameter* parameter = data ? findSubsystemParameter(name) : nullptr;
  if (!parameter) return false;
  text = parameter->text ? data->*parameter->text : kmf::utf8_string_to_ustring(onOff(data->*parameter->flag));
  return true;
}

bool checkHostParameter(const GTBlock& block, const std::string& name, const ustring& text) {
  if (isIoPort(block)) {
    if (name == "Port") return orderFrom(block, text), true;
    return name == "Side" && (sideFrom(block, text), true);
  }
  const SubsystemParameter* parameter = isSubsystem(block) ? findSubsystemParameter(name) : nullptr;
  if (parameter && parameter->flag) switchFrom(block, parameter->name, text);
  return parameter != nullptr;
}

bool setHostParameter(GTBlock& block, const std::string& name, const ustring& text) {
  if (isIoPort(block)) return setIoPortParameter(block, name, text);
  const SubsystemParameter* parameter = isSubsystem(block) ? findSubsystemParameter(name) : nullptr;
  if (!parameter) return false;
  setSubsystemParameter(block, *parameter, text);
  return true;
}

void throwUnknownParameter(const GTBlock& block, const std::string& name, std::vector<std::string> known) {
  kmf::throw_message("kinemo:host:diagram", "UnknownParameter", name, block.getFullPath(true),
                     nearestName(name, known));
}

}  // namespace embedded::block_diagram
