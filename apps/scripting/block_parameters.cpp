#include "apps/scripting/block_parameters.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>

namespace kinemo::scripting {

namespace {

namespace host = embedded::block_diagram;

/// What the host says of the parameters that it keeps itself.
struct HostParameter {
  const char* name;
  const char* prompt;
  GTPrmDesc::Type type;
  std::vector<std::string> choices = {};
};

const std::vector<HostParameter>& host_parameters() {
  static const std::vector<HostParameter> all{
      {"ActiveVariant", "Name of the active choice", GTPrmDesc::STRING},
      {"Opaque", "One component, whose contents are hidden", GTPrmDesc::BOOLEAN},
      {"ReferenceFile", "File of the part that it links to", GTPrmDesc::STRING},
      {"TreatAsAtomicUnit", "A graph of its own", GTPrmDesc::BOOLEAN},
      {"Variant", "Contents are choices, of which one is active", GTPrmDesc::BOOLEAN},
      {"Port", "Number that sorts the ports of a side", GTPrmDesc::EDIT},
      {"Side", "Side of the subsystem", GTPrmDesc::POPUP, {"Left", "Right"}},
  };
  return all;
}

void describe(GTMaskParameter& parameter, const GTBlock& block) {
  const auto mask = MaskInterface::mask(&block);
  for (std::size_t i = 0; mask != nullptr && i < mask->parameters.size(); ++i) {
    if (mask->parameters[i].name == parameter.name) {
      parameter = mask->parameters[i];
      return;
    }
  }
  const GTDialogInfo& dialog = block.host().dialog;
  const int number = dialog.find(parameter.name);
  if (number >= 0) {
    parameter.prompt = dialog.descriptor(number)->prompt();
    parameter.type = dialog.descriptor(number)->type();
    return;
  }
  for (const HostParameter& known : host_parameters()) {
    if (parameter.name != known.name) continue;
    parameter.prompt = known.prompt;
    parameter.type = known.type;
    parameter.choices = known.choices;
  }
}

/// A unit that is a parameter itself goes before the one of the default.
void tell_units(std::vector<GTMaskParameter>& parameters) {
  for (GTMaskParameter& parameter : parameters) {
    const std::string unit = parameter.name + "_unit";
    const auto found =
        std::find_if(parameters.begin(), parameters.end(), [&](const auto& other) { return other.name == unit; });
    if (found != parameters.end()) parameter.unit = kmf::ustring_to_utf8_string(found->value);
  }
}

GTMaskParameter component_property(const std::string& name, const ustring& value) {
  GTMaskParameter property;
  property.name = name;
  property.prompt = "Property of the component";
  property.value = value;
  property.type = GTPrmDesc::STRING;
  return property;
}

bool is_place(const std::string& name) {
  return name == "Position" || name == "Rotation" || name == "Mirror";
}

}  // namespace

std::vector<GTMaskParameter> parameters_of(const GTBlock& block) {
  std::vector<GTMaskParameter> parameters;
  for (const std::string& name : host::parameterNames(block)) {
    GTMaskParameter parameter;
    parameter.name = name;
    describe(parameter, block);
    parameter.value = host::parameter(block, name);
    parameters.push_back(std::move(parameter));
  }
  for (const auto& [name, value] : host::properties(block)) {
    if (!is_place(name)) parameters.push_back(component_property(name, value));
  }
  tell_units(parameters);
  return parameters;
}

}  // namespace kinemo::scripting
