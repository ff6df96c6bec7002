// Masks of subsystems: told, given, changed, taken away. A definition never changes once a block has it, since blocks
// share it: each edit gives the subsystem one of its own.

#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/mask_parameter.hpp"
#include "apps/scripting/mask_structure.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace kinemo::scripting {

namespace {

using Mask = boost::shared_ptr<GTMaskDefinition>;

/// @throws "NotABlock" (diagram), "NoInside" (path, block type)
GTBlock& subsystem_from(const Call& call, std::size_t input) {
  GTBlock& block = block_from(call, input);
  if (!host::isSubsystem(block)) {
    kmf::throw_message(diagram_messages, "NoInside", block.getFullPath(true), host::blockType(block));
  }
  return block;
}

/// A mask without parameters where the subsystem has none.
Mask copy_of_mask(const GTBlock& subsystem) {
  const auto mask = MaskInterface::mask(&subsystem);
  return mask != nullptr ? boost::make_shared<GTMaskDefinition>(*mask) : boost::make_shared<GTMaskDefinition>();
}

std::vector<GTMaskParameter>::iterator find_parameter(GTMaskDefinition& mask, const std::string& name) {
  return std::find_if(mask.parameters.begin(), mask.parameters.end(),
                      [&](const GTMaskParameter& parameter) { return parameter.name == name; });
}

/// @throws "NoMaskParameter" (name, path, nearest or "")
GTMaskParameter& parameter_named(GTMaskDefinition& mask, const std::string& name, const GTBlock& subsystem) {
  const auto found = find_parameter(mask, name);
  if (found != mask.parameters.end()) return *found;
  std::vector<std::string> names;
  for (const GTMaskParameter& parameter : mask.parameters) names.push_back(parameter.name);
  kmf::throw_message(diagram_messages, "NoMaskParameter", name, subsystem.getFullPath(true),
                     host::nearestName(name, names));
}

/// Pairs of property and setting from the input `first` on. @throws "NameWithoutValue" (function, property)
void set_properties(MaskParameterEdit& edit, const Call& call, std::size_t first) {
  for (std::size_t i = first; i < call.size(); i += 2) {
    if (i + 1 == call.size()) {
      kmf::throw_message(diagram_messages, "NameWithoutValue", std::string(call.name), text_from(call, i));
    }
    edit.set(text_from(call, i), call[i + 1], {call.name, i + 2});
  }
}

void mask(Call& call) {
  const auto mask = MaskInterface::mask(&subsystem_from(call, 0));
  call.give(mask != nullptr ? structure_of(*mask) : cvUniquePtr(cvCreateDoubleMatrix(0, 0)));
}

void set_mask(Call& call) {
  GTBlock& block = subsystem_from(call, 0);
  const bool none = cvIsNumeric(call[1]) && cvIsEmpty(call[1]);
  MaskInterface::setMask(&block, none ? Mask() : mask_of(call[1], {call.name, 2}));
}

void add_mask_parameter(Call& call) {
  GTBlock& block = subsystem_from(call, 0);
  const std::string name = text_from(call, 1);
  const Mask mask = copy_of_mask(block);
  if (find_parameter(*mask, name) != mask->parameters.end()) {
    kmf::throw_message(diagram_messages, "MaskParameterExists", name, block.getFullPath(true));
  }
  MaskParameterEdit edit(new_mask_parameter(name));
  edit.set("value", call[2], {call.name, 3});
  set_properties(edit, call, 3);
  mask->parameters.push_back(edit.done());
  MaskInterface::setMask(&block, mask);
}

/// A value that is told now goes before one that was set earlier; any other one of the block has to fit.
void set_mask_parameter(Call& call) {
  GTBlock& block = subsystem_from(call, 0);
  const std::string name = text_from(call, 1);
  const Mask mask = copy_of_mask(block);
  GTMaskParameter& parameter = parameter_named(*mask, name, block);
  MaskParameterEdit edit(parameter);
  set_properties(edit, call, 2);
  parameter = edit.done();
  const bool asked = edit.has("value");
  if (!asked && (edit.has("kind") || edit.has("choices"))) {
    check_mask_value(parameter, host::parameter(block, name));
  }
  MaskInterface::setMask(&block, mask);
  if (asked) host::setParameter(block, name, parameter.value);
}

void delete_mask_parameter(Call& call) {
  GTBlock& block = subsystem_from(call, 0);
  const std::string name = text_from(call, 1);
  const Mask mask = copy_of_mask(block);
  parameter_named(*mask, name, block);
  mask->parameters.erase(find_parameter(*mask, name));
  MaskInterface::setMask(&block, mask);
}

constexpr const char* property_help =
    "Properties are 'value', 'unit' (for people), 'prompt', 'kind' and 'choices'. A kind is 'expression' (the "
    "default), "
    "'text', which is taken as it stands, 'switch', which is 'on' or 'off', or 'choice', one of the choices, which are "
    "a cell array of texts.";

}  // namespace

std::vector<DiagramFunction> mask_functions() {
  return {
      {"mask",
       1,
       1,
       mask,
       {"m = mask(subsystem)", "Tells the mask of a subsystem; [] where it has none.",
        "A structure with type, description and parameters, which is a structure array with name, value, unit, prompt, "
        "kind and choices. The value is what the parameter has until set_param gives it another one; get_param tells "
        "what it has now."}},
      {"set_mask",
       2,
       2,
       set_mask,
       {"set_mask(subsystem, m)\nset_mask(subsystem, [])", "Gives a subsystem a mask, in place of an earlier one.",
        "The mask is a structure as 'mask' tells it; only names and values of parameters have to be there. What "
        "set_param set of parameters that both masks have is kept. [] takes the mask away."}},
      {"add_mask_parameter",
       3,
       any_number,
       add_mask_parameter,
       {"add_mask_parameter(subsystem, name, value)\nadd_mask_parameter(subsystem, name, value, property, setting, "
        "...)",
        "Adds a parameter to the mask of a subsystem, which gets a mask where it has none.",
        std::string("The value is a text, for an expression seen from where the subsystem stands, or a number, a "
                    "matrix, true or false, which are written as texts. ") +
            property_help}},
      {"set_mask_parameter",
       4,
       any_number,
       set_mask_parameter,
       {"set_mask_parameter(subsystem, name, property, setting, ...)", "Changes a parameter of a subsystem's mask.",
        std::string(property_help) + " A value takes the place of what set_param set before."}},
      {"delete_mask_parameter",
       2,
       2,
       delete_mask_parameter,
       {"delete_mask_parameter(subsystem, name)", "Takes a parameter out of a subsystem's mask.",
        "The mask stays, also without parameters; set_mask(subsystem, []) takes it away."}}};
}

}  // namespace kinemo::scripting
