#include "domains/physical/prepared_kind.hpp"

#include "domains/physical/icon_folder.hpp"
#include "domains/physical/mask_definition.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <charconv>
#include <optional>

namespace kinemo::physical {

const char domain_name[] = "physical";
const char mask_function[] = "physical.internal.generateMask";
const char from_model[] = "model";
const char from_block[] = "own";

namespace {

ustring wide(const std::string& text) {
  return kmf::utf8_string_to_ustring(text);
}

/// The type path of a library name: "physical/spice/resistor" is physical.spice.resistor.
kmf::VnIdPath1 type_path(std::string libraryName) {
  std::replace(libraryName.begin(), libraryName.end(), '/', '.');
  return kmf::VnIdPath1(libraryName);
}

PreparedParameter prepare(const Parameter& parameter) {
  PreparedParameter prepared;
  prepared.id = parameter.name;
  prepared.form = parameter.form;
  prepared.choices = parameter.choices;
  prepared.value = wide(parameter.value);
  if (!is_numeric(parameter.form)) return prepared;
  prepared.unit = parameter.name + "_unit";
  prepared.conf = parameter.name + "_conf";
  prepared.rule = {units2::core::parse(parameter.unit), parameter.unlimited};
  prepared.setting = parameter.setting;
  if (!parameter.setting.empty()) prepared.from = parameter.name + "_from";
  return prepared;
}

/// A whole number without sign, blanks around it allowed.
std::optional<std::size_t> whole_number(std::string text) {
  text.erase(0, text.find_first_not_of(' '));
  text.erase(text.find_last_not_of(' ') + 1);
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

bool fits(std::size_t count, const PortRule& rule) {
  return count >= rule.minimum && count <= rule.maximum && (count - rule.minimum) % rule.step == 0;
}

bool has_many_looks(const BlockKind& kind) {
  return kind.rule.port ||
         std::any_of(kind.icons.begin(), kind.icons.end(), [](const Icon& icon) { return !icon.device.empty(); });
}

std::map<std::string, ustring> default_values(const BlockKind& kind) {
  std::map<std::string, ustring> values;
  for (const Parameter& parameter : kind.parameters) values.emplace(parameter.name, wide(parameter.value));
  return values;
}

/// The first word of a model card: its type, in small letters.
std::string device_of(const std::map<std::string, ustring>& parameters) {
  const auto card = parameters.find("model_card");
  std::string word;
  if (card == parameters.end()) return word;
  for (const char16_t c : card->second) {
    const bool letter = (c | 0x20) >= u'a' && (c | 0x20) <= u'z';
    if (!letter && (c != u' ' || !word.empty())) break;
    if (letter) word += static_cast<char>(c | 0x20);
  }
  return word;
}

/// Ports in the order in which they stand on their sides.
std::vector<Port> by_rank(std::vector<Port> ports) {
  std::stable_sort(ports.begin(), ports.end(), [](const Port& a, const Port& b) { return a.rank < b.rank; });
  return ports;
}

}  // namespace

kmf::VnIdPath1 connector_type(const std::string& portType) {
  return kmf::VnIdPath1(std::string(domain_name) + "." + portType);
}

PreparedKind::PreparedKind(BlockKind kind)
    : kind_(std::move(kind)),
      libraryName_(std::string(domain_name) + "/" + kind_.name),
      type_(type_path(libraryName_)),
      mask_(make_mask_definition(kind_)) {
  for (const Parameter& parameter : kind_.parameters) parameters_.push_back(prepare(parameter));
  manyLooks_ = has_many_looks(kind_);
  standard_ = look(default_values(kind_));
}

std::shared_ptr<const Look> PreparedKind::look(const std::map<std::string, ustring>& parameters) const {
  const std::size_t count = countOfPorts(parameters);
  return keptLook(count, icon(count, device_of(parameters)));
}

std::size_t PreparedKind::countOfPorts(const std::map<std::string, ustring>& parameters) const {
  const PortRule& rule = kind_.rule;
  if (!rule.port) return kind_.ports.size();
  const ustring& text = parameters.at(rule.parameter);
  const std::optional<std::size_t> count = whole_number(kmf::ustring_to_utf8_string(text));
  if (!count || !fits(*count, rule))
    kmf::throw_message("kinemo:physical:blocks", "InvalidTerminalCount", rule.parameter, text,
                       std::to_string(rule.minimum), std::to_string(rule.maximum), std::to_string(rule.step));
  return *count;
}

std::vector<Port> PreparedKind::ports(std::size_t count) const {
  if (!kind_.rule.port) return kind_.ports;
  std::vector<Port> ports;
  for (std::size_t i = 0; i < count; ++i) ports.push_back(kind_.rule.port(i));
  return ports;
}

const Icon* PreparedKind::icon(std::size_t count, const std::string& device) const {
  const auto found = std::find_if(kind_.icons.begin(), kind_.icons.end(), [&](const Icon& icon) {
    return (icon.ports == 0 || icon.ports == count) && (icon.device.empty() || icon.device == device);
  });
  return found == kind_.icons.end() ? nullptr : &*found;
}

std::shared_ptr<const Look> PreparedKind::keptLook(std::size_t count, const Icon* icon) const {
  std::weak_ptr<const Look>& kept = looks_[{count, icon}];
  if (std::shared_ptr<const Look> look = kept.lock()) return look;
  std::shared_ptr<const Look> look = makeLook(ports(count), icon);
  kept = look;
  return look;
}

std::shared_ptr<const Look> PreparedKind::makeLook(const std::vector<Port>& ports, const Icon* icon) const {
  auto look = std::make_shared<Look>(Look{{}, gl::core::Component(type_)});
  gl::gti::BlockDescriptor& descriptor = look->descriptor;
  descriptor.description(wide(kind_.text));
  descriptor.blockText(wide(kind_.title));
  descriptor.enableFrame(icon == nullptr);
  if (icon) descriptor.iconFile(icon_folder() / icon->file);
  descriptor.autogenMask(mask_function, libraryName_.c_str(), false, false, false);
  for (const Port& port : by_rank(ports)) {
    const auto add =
        port.side == Side::left ? &gl::gti::BlockDescriptor::addLeftPort : &gl::gti::BlockDescriptor::addRightPort;
    (descriptor.*add)(port.id, icon && !icon->labels ? ustring() : wide(port.label), port.type, ustring());
  }
  for (const Port& port : ports) look->component.addConnector(port.id, connector_type(port.type));
  if (kind_.reference) look->component.tag("Reference", ustring(u"on"));
  return look;
}

}  // namespace kinemo::physical
