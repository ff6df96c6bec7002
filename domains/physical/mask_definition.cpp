#include "domains/physical/mask_definition.hpp"

#include "domains/physical/prepared_kind.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

namespace kinemo::physical {

namespace {

GTPrmDesc::Type type_of(ParameterForm form) {
  switch (form) {
    case ParameterForm::expression:
    case ParameterForm::row:
      return GTPrmDesc::EDIT;
    case ParameterForm::text:
      return GTPrmDesc::STRING;
    case ParameterForm::choice:
      break;
  }
  return GTPrmDesc::POPUP;
}

GTMaskParameter row(const Parameter& parameter) {
  return {parameter.name,          parameter.prompt, kmf::utf8_string_to_ustring(parameter.value),
          type_of(parameter.form), parameter.unit,   parameter.choices};
}

Parameter unit_partner(const Parameter& parameter) {
  return {parameter.name + "_unit", parameter.prompt + ": unit", parameter.unit, "", ParameterForm::text};
}

/// A text and no list of choices, since capital letters are as good as small ones; the block checks it.
Parameter conf_partner(const Parameter& parameter) {
  return {parameter.name + "_conf", parameter.prompt + ": compiletime or runtime", "compiletime", "",
          ParameterForm::text};
}

Parameter from_partner(const Parameter& parameter) {
  return choice((parameter.name + "_from").c_str(),
                (parameter.prompt + ": the model's " + parameter.setting + " or own").c_str(),
                {from_model, from_block});
}

}  // namespace

boost::shared_ptr<const GTMaskDefinition> make_mask_definition(const BlockKind& kind) {
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = kind.title;
  mask->description = kind.text;
  for (const Parameter& parameter : kind.parameters) {
    mask->parameters.push_back(row(parameter));
    if (!is_numeric(parameter.form)) continue;
    mask->parameters.push_back(row(unit_partner(parameter)));
    mask->parameters.push_back(row(conf_partner(parameter)));
    if (!parameter.setting.empty()) mask->parameters.push_back(row(from_partner(parameter)));
  }
  return mask;
}

}  // namespace kinemo::physical
