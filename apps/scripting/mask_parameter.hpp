// One parameter of a mask, as scripts tell it: a name, and properties by the names that diagram files have for them.
#pragma once

#include "apps/scripting/diagram_inputs.hpp"
#include "platform/block_diagram/mask.hpp"

#include <optional>
#include <string>
#include <vector>

namespace kinemo::scripting {

/// "value", "unit", "prompt", "kind" and "choices", as `mask` lists them behind "name".
const std::vector<std::string>& mask_properties();

/// @throws "BadMaskParameter" (name), "MaskParameterHides" (name) where subsystems have a parameter of that name
void check_mask_parameter_name(const std::string& name);

/// An expression without a value whose prompt is its name. @throws as above
GTMaskParameter new_mask_parameter(const std::string& name);

/// Changes a parameter, property by property.
class MaskParameterEdit {
 public:
  explicit MaskParameterEdit(GTMaskParameter before) : parameter_(std::move(before)) {}

  /// Sets a property, whose name is told in any case of letters. The setting is borrowed until the edit is done: what a
  /// number or a switch means as a value depends on the kind.
  /// @throws "UnknownMaskProperty" (property, nearest or ""), "BadMaskKind" (kind), "NotAText", "NotTexts"
  void set(const std::string& property, const cvArray_tag* setting, const InputPlace& place);
  /// Whether the property was set.
  bool has(const std::string& property) const;
  /// The parameter as it is now. Choices make it a choice, and another kind takes them away.
  /// @throws "ChoicesOfNoChoice" (parameter), "BadMaskValue" (parameter, value, what is valid),
  /// "kinemo:host:parameters" "NotAValue", "ValueWithUnit"
  GTMaskParameter done() const;

 private:
  GTMaskParameter parameter_;
  std::optional<host::ParameterValue> value_;
  std::vector<std::string> set_;
};

/// @throws "BadMaskValue" (parameter, value, what is valid)
void check_mask_value(const GTMaskParameter& parameter, const ustring& value);

/// The word for an expression, a text, a switch or a choice.
std::string mask_kind(const GTMaskParameter& parameter);

}  // namespace kinemo::scripting
