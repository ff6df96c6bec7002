#include "apps/scripting/mask_parameter.hpp"

#include "apps/scripting/diagram_inputs.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "formats/diagram/mask_kinds.hpp"
#include "formats/names.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

#include <algorithm>

namespace kinemo::scripting {

namespace {

template <class Value>
bool contains(const std::vector<Value>& values, const Value& value) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

/// @throws "UnknownMaskProperty" (property, nearest or "")
std::string property_named(const std::string& name) {
  std::string property = kmf::lower(name);
  if (contains(mask_properties(), property)) return property;
  kmf::throw_message(diagram_messages, "UnknownMaskProperty", name, host::nearestName(property, mask_properties()));
}

/// @throws "BadMaskKind" (kind)
GTPrmDesc::Type kind_named(const std::string& word) {
  for (const formats::diagram::MaskParameterKind& kind : formats::diagram::mask_parameter_kinds) {
    if (kmf::lower(word) == kind.word) return kind.type;
  }
  kmf::throw_message(diagram_messages, "BadMaskKind", word);
}

std::vector<std::string> choices_of(const cvArray_tag* array, const InputPlace& place) {
  std::vector<std::string> choices;
  for (const ustring& choice : texts_of(array, place)) choices.push_back(kmf::ustring_to_utf8_string(choice));
  return choices;
}

}  // namespace

const std::vector<std::string>& mask_properties() {
  static const std::vector<std::string> names{"value", "unit", "prompt", "kind", "choices"};
  return names;
}

void check_mask_parameter_name(const std::string& name) {
  if (!kmf::VnId::isLegal(name)) kmf::throw_message(diagram_messages, "BadMaskParameter", name);
  static const std::vector<std::string> taken{"ActiveVariant", "Opaque", "ReferenceFile", "TreatAsAtomicUnit",
                                              "Variant"};
  if (contains(taken, name)) kmf::throw_message(diagram_messages, "MaskParameterHides", name);
}

GTMaskParameter new_mask_parameter(const std::string& name) {
  check_mask_parameter_name(name);
  GTMaskParameter parameter;
  parameter.name = name;
  parameter.prompt = name;
  return parameter;
}

void MaskParameterEdit::set(const std::string& name, const cvArray_tag* setting, const InputPlace& place) {
  const std::string property = property_named(name);
  const auto text = [&] { return kmf::ustring_to_utf8_string(text_of(setting, place)); };
  if (property == "value") value_ = {parameter_.name, setting, place.function, place.input};
  if (property == "unit") parameter_.unit = text();
  if (property == "prompt") parameter_.prompt = text();
  if (property == "kind") parameter_.type = kind_named(text());
  if (property == "choices") parameter_.choices = choices_of(setting, place);
  set_.push_back(property);
}

bool MaskParameterEdit::has(const std::string& property) const {
  return contains(set_, property);
}

GTMaskParameter MaskParameterEdit::done() const {
  GTMaskParameter parameter = parameter_;
  if (has("choices") && !parameter.choices.empty() && !has("kind")) parameter.type = GTPrmDesc::POPUP;
  if (parameter.type != GTPrmDesc::POPUP && !parameter.choices.empty()) {
    if (has("choices")) kmf::throw_message(diagram_messages, "ChoicesOfNoChoice", parameter.name);
    parameter.choices.clear();
  }
  if (value_) {
    const bool is_switch = parameter.type == GTPrmDesc::BOOLEAN;
    const auto sort = is_switch ? host::ParameterSort::switched : host::ParameterSort::expression;
    parameter.value = host::parameterText(*value_, sort);
  }
  check_mask_value(parameter, parameter.value);
  return parameter;
}

void check_mask_value(const GTMaskParameter& parameter, const ustring& value) {
  std::vector<std::string> valid = parameter.choices;
  if (parameter.type == GTPrmDesc::BOOLEAN) valid = {"on", "off"};
  if (valid.empty() || contains(valid, kmf::ustring_to_utf8_string(value))) return;
  kmf::throw_message(diagram_messages, "BadMaskValue", parameter.name, value, formats::list_names(valid));
}

std::string mask_kind(const GTMaskParameter& parameter) {
  for (const formats::diagram::MaskParameterKind& kind : formats::diagram::mask_parameter_kinds) {
    if (kind.type == parameter.type) return kind.word;
  }
  return formats::diagram::mask_parameter_kinds[0].word;
}

}  // namespace kinemo::scripting
