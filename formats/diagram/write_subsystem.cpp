#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "formats/diagram/mask_kinds.hpp"
#include "formats/diagram/writing.hpp"
#include "platform/foundation/strings.hpp"

#include <array>

namespace kinemo::formats::diagram {

namespace {

// --- masks

std::string kind_word(GTPrmDesc::Type type) {
  for (const MaskParameterKind& kind : mask_parameter_kinds) {
    if (kind.type == type) return kind.word;
  }
  return mask_parameter_kinds[0].word;
}

std::string mask_parameter(Writing& writing, const GTBlock& block, const GTMaskParameter& parameter) {
  const std::string value = writing.value(&block, parameter.value);
  YamlEntries entries{{"value", value}};
  if (!parameter.unit.empty()) entries.emplace_back("unit", writing.name(&block, parameter.unit));
  if (parameter.prompt != parameter.name) entries.emplace_back("prompt", writing.name(&block, parameter.prompt));
  if (parameter.type != GTPrmDesc::EDIT) entries.emplace_back("kind", kind_word(parameter.type));
  if (!parameter.choices.empty()) {
    std::vector<std::string> choices;
    for (const std::string& choice : parameter.choices) choices.push_back(writing.value(&block, choice));
    entries.emplace_back("choices", yaml_list(choices));
    if (parameter.type != GTPrmDesc::POPUP) {
      writing.refuse(&block, "the mask parameter '" + parameter.name + "' has choices without being one");
    }
  }
  return entries.size() == 1 ? value : yaml_mapping(entries);
}

void write_mask_parameters(Writing& writing, const GTBlock& block, const GTMaskDefinition& mask, std::size_t indent) {
  const auto [anchor, written] =
      writing.is_shared(mask) ? writing.anchor(mask) : std::pair<std::string, bool>(std::string(), false);
  if (written) return writing.entry(indent, "mask", "*" + anchor);
  const std::string mark = anchor.empty() ? "" : " &" + anchor;
  if (mask.parameters.empty()) {
    writing.text += std::string(indent, ' ') + "mask:" + mark + " {}\n";
    return;
  }
  writing.text += std::string(indent, ' ') + "mask:" + mark + "\n";
  for (const GTMaskParameter& parameter : mask.parameters) {
    writing.entry(indent + 2, writing.name(&block, parameter.name), mask_parameter(writing, block, parameter));
  }
}

void write_mask(Writing& writing, const GTBlock& block, std::size_t indent) {
  const auto mask = MaskInterface::mask(&block);
  if (mask == nullptr) return;
  if (!mask->type.empty()) writing.entry(indent, "mask_type", writing.value(&block, mask->type));
  if (!mask->description.empty()) {
    writing.entry(indent, "mask_description", writing.value(&block, mask->description));
  }
  write_mask_parameters(writing, block, *mask, indent);
}

/// A reader sets flags by name, and would meet the mask's parameter of that name.
void refuse_hidden_flags(Writing& writing, const GTBlock& block) {
  const auto mask = MaskInterface::mask(&block);
  if (mask == nullptr) return;
  static constexpr std::array<const char*, 5> flags{"ActiveVariant", "Opaque", "ReferenceFile", "TreatAsAtomicUnit",
                                                    "Variant"};
  for (const GTMaskParameter& parameter : mask->parameters) {
    for (const char* flag : flags) {
      if (parameter.name != flag) continue;
      writing.refuse(&block, "the mask's parameter '" + parameter.name + "' hides the subsystem's own of that name");
    }
  }
}

// --- ports

std::string port_text(Writing& writing, const GTBlock& port) {
  const std::string name = writing.name(&port, port.getGrName());
  YamlEntries entries = place_entries(writing, port, {}, nullptr);
  if (entries.empty()) return name;
  entries.insert(entries.begin(), {"name", name});
  return yaml_mapping(entries);
}

void write_ports(Writing& writing, const GTBlock& block, std::size_t indent) {
  const host::SubsystemData& data = *block.host().subsystem();
  YamlEntries sides;
  for (const host::Side side : {host::Side::Left, host::Side::Right}) {
    std::vector<std::string> ports;
    for (const GTBlock* port : data.ioPorts[static_cast<int>(side)]) ports.push_back(port_text(writing, *port));
    if (!ports.empty()) sides.emplace_back(side == host::Side::Left ? "left" : "right", yaml_list(ports));
  }
  // Without the key, a variant would have the ports of its choices.
  if (sides.empty() && data.variant) writing.entry(indent, "ports", "{}");
  writing.mapping(indent, "ports", sides);
}

// --- flags

void write_flags(Writing& writing, const GTBlock& block, std::size_t indent) {
  const host::SubsystemData& data = *block.host().subsystem();
  if (data.opaque) writing.entry(indent, "opaque", "on");
  if (!data.variant && !data.activeVariant.empty()) {
    writing.refuse(&block, "the subsystem is no variant, but its parameter 'ActiveVariant' names a choice",
                   "an empty 'ActiveVariant', or 'Variant' being on");
  }
}

std::string name_of(Writing& writing, const GTBlock& block) {
  const ustring& name = block.getGrName();
  if (name.back() == u'/') {
    writing.refuse(&block, "the name of a subsystem can't end with '/'", "a name that ends otherwise");
  }
  return writing.name(&block, name);
}

void write_all(Writing& writing, const YamlEntries& entries, std::size_t indent) {
  for (const auto& [key, value] : entries) writing.entry(indent, key, value);
}

}  // namespace

YamlEntries mask_values(Writing& writing, const GTBlock& block, const GTBlock* fresh) {
  YamlEntries entries;
  const auto mask = MaskInterface::mask(&block);
  if (mask == nullptr) return entries;
  for (const GTMaskParameter& parameter : mask->parameters) {
    const ustring text = host::parameter(block, parameter.name);
    if (text == (fresh != nullptr ? host::parameter(*fresh, parameter.name) : parameter.value)) continue;
    entries.emplace_back(writing.name(&block, parameter.name), writing.value(&block, text));
  }
  return entries;
}

void write_subsystem_head(Writing& writing, const GTBlock& block, std::size_t indent) {
  writing.open(indent, name_of(writing, block));
  indent += 2;
  writing.entry(indent, "type", "subsystem");
  if (block.host().subsystem()->atomic) writing.entry(indent, "atomic", "on");
  refuse_hidden_flags(writing, block);
  write_flags(writing, block, indent);
  write_mask(writing, block, indent);
  YamlEntries parameters = mask_values(writing, block, nullptr);
  const YamlEntries place = place_entries(writing, block, {}, host::isOpaque(block) ? &parameters : nullptr);
  writing.mapping(indent, "parameters", parameters);
  write_ports(writing, block, indent);
  write_all(writing, place, indent);
}

void write_definition(Writing& writing, const GTBlock& block) {
  writing.entry(0, "variant", host::isVariant(block) ? "on" : "off");
  write_flags(writing, block, 0);
  write_mask(writing, block, 0);
  write_ports(writing, block, 0);
}

void write_link(Writing& writing, const GTBlock& block, const GTBlock& fresh, const std::string& path,
                std::size_t indent) {
  YamlEntries entries{{"type", writing.name(&block, path)}};
  const bool atomic = block.host().subsystem()->atomic;
  if (atomic != fresh.host().subsystem()->atomic) entries.emplace_back("atomic", atomic ? "on" : "off");
  YamlEntries parameters = mask_values(writing, block, &fresh);
  const YamlEntries place =
      place_entries(writing, block, host::properties(fresh), host::isOpaque(block) ? &parameters : nullptr);
  entries.insert(entries.end(), place.begin(), place.end());
  writing.block(indent, name_of(writing, block), entries, parameters);
}

}  // namespace kinemo::formats::diagram
