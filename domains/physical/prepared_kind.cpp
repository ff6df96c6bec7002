#include "domains/physical/prepared_kind.hpp"

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

const Parameter& parameter_of(const PortRule& rule, const BlockKind& kind) {
  return *std::find_if(kind.parameters.begin(), kind.parameters.end(),
                       [&rule](const Parameter& parameter) { return parameter.name == rule.parameter; });
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
  standard_ = hasPortRule() ? look(wide(parameter_of(kind_.rule, kind_).value)) : makeLook(kind_.ports);
}

std::shared_ptr<const Look> PreparedKind::look(const ustring& count) const {
  const PortRule& rule = kind_.rule;
  const std::optional<std::size_t> ports = whole_number(kmf::ustring_to_utf8_string(count));
  if (!ports || !fits(*ports, rule))
    kmf::throw_message("kinemo:physical:blocks", "InvalidTerminalCount", rule.parameter, count,
                       std::to_string(rule.minimum), std::to_string(rule.maximum), std::to_string(rule.step));
  return countedLook(*ports);
}

std::shared_ptr<const Look> PreparedKind::countedLook(std::size_t count) const {
  std::weak_ptr<const Look>& kept = looks_[count];
  if (std::shared_ptr<const Look> look = kept.lock()) return look;
  std::vector<Port> ports;
  for (std::size_t i = 0; i < count; ++i) ports.push_back(kind_.rule.port(i));
  std::shared_ptr<const Look> look = makeLook(ports);
  kept = look;
  return look;
}

std::shared_ptr<const Look> PreparedKind::makeLook(const std::vector<Port>& ports) const {
  auto look = std::make_shared<Look>(Look{{}, gl::core::Component(type_)});
  gl::gti::BlockDescriptor& descriptor = look->descriptor;
  descriptor.description(wide(kind_.text));
  descriptor.blockText(wide(kind_.title));
  if (!kind_.icon.empty()) descriptor.iconFile(std::filesystem::path(kind_.icon));
  descriptor.autogenMask(mask_function, libraryName_.c_str(), false, false, false);
  for (const Port& port : ports) {
    const auto add =
        port.side == Side::left ? &gl::gti::BlockDescriptor::addLeftPort : &gl::gti::BlockDescriptor::addRightPort;
    (descriptor.*add)(port.id, wide(port.label), port.type, ustring());
    look->component.addConnector(port.id, connector_type(port.type));
  }
  if (kind_.reference) look->component.tag("Reference", ustring(u"on"));
  return look;
}

}  // namespace kinemo::physical
