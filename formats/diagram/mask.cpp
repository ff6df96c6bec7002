#include "formats/diagram/mask_kinds.hpp"
#include "formats/diagram/reading.hpp"

#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

#include <boost/make_shared.hpp>

namespace kinemo::formats::diagram {

namespace {

std::string text_at(const Scope& scope, const YamlNode& node, const char* key) {
  const YamlNode* value = node.find(key);
  return value != nullptr ? expect_text(scope, *value, "'" + std::string(key) + "'").value_or("") : std::string();
}

void read_kind(const Scope& scope, const YamlNode& kind, GTMaskParameter& parameter) {
  const std::string word = expect_text(scope, kind, "'kind'").value_or("expression");
  for (const MaskParameterKind& known : mask_parameter_kinds) {
    if (word != known.word) continue;
    parameter.type = known.type;
    return;
  }
  scope.error(kind, "diagram:bad-value", "a mask parameter can't be of the kind '" + word + "'",
              "expression, text, switch, choice");
}

void read_choices(const Scope& scope, const YamlNode& node, GTMaskParameter& parameter) {
  const YamlNode* choices = node.find("choices");
  if (choices == nullptr) return;
  if (parameter.type != GTPrmDesc::POPUP) {
    return scope.error(*choices, "diagram:bad-value", "only a mask parameter of the kind 'choice' has choices",
                       "kind: choice");
  }
  if (!expect_list(scope, *choices, "'choices'")) return;
  for (const YamlNode* choice : choices->children) {
    if (const auto text = expect_text(scope, *choice, "a choice")) parameter.choices.push_back(*text);
  }
}

/// The short form `R: 2*R0`, or the long one with `value` and what the dialog shows.
bool read_mask_parameter(const Scope& scope, const YamlNode& node, GTMaskParameter& parameter) {
  if (!node.is_mapping()) {
    const auto text = expect_text(scope, node, "the mask parameter '" + parameter.name + "'");
    if (text) parameter.value = kmf::utf8_string_to_ustring(*text);
    return text.has_value();
  }
  expect_object(scope, node, ObjectKind::mask_parameter);
  if (node.find("value") == nullptr) {
    scope.error(node, "diagram:missing-key", "the mask parameter '" + parameter.name + "' has no 'value'");
    return false;
  }
  parameter.value = kmf::utf8_string_to_ustring(text_at(scope, node, "value"));
  parameter.unit = text_at(scope, node, "unit");
  if (node.find("prompt") != nullptr) parameter.prompt = text_at(scope, node, "prompt");
  if (const YamlNode* kind = node.find("kind")) read_kind(scope, *kind, parameter);
  read_choices(scope, node, parameter);
  return true;
}

void read_mask_parameters(const Scope& scope, const YamlNode& node, GTMaskDefinition& mask) {
  if (!expect_mapping(scope, node, "'mask'")) return;
  for (std::size_t i = 0; i < node.entry_count(); ++i) {
    GTMaskParameter parameter;
    parameter.name = node.key(i).text;
    parameter.prompt = parameter.name;
    if (!kmf::VnId::isLegal(parameter.name)) {
      scope.error(node.key(i), "diagram:bad-value", "'" + parameter.name + "' can't be the name of a mask parameter",
                  "a letter, then letters, digits and underscores");
      continue;
    }
    if (read_mask_parameter(scope, node.value(i), parameter)) mask.parameters.push_back(std::move(parameter));
  }
}

}  // namespace

boost::shared_ptr<const GTMaskDefinition> Reading::mask(const Scope& scope, const YamlNode& definition) {
  const YamlNode* parameters = definition.find("mask");
  if (parameters == nullptr) {
    for (const char* key : {"mask_type", "mask_description"}) {
      const YamlNode* alone = definition.find(key);
      if (alone == nullptr) continue;
      scope.error(*alone, "diagram:missing-key", "the subsystem has no mask that this could be said of", "'mask'");
    }
    return nullptr;
  }
  const std::string type = text_at(scope, definition, "mask_type");
  const std::string description = text_at(scope, definition, "mask_description");
  boost::shared_ptr<const GTMaskDefinition>& known = masks_[{parameters, type, description}];
  if (known != nullptr) return known;
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = type;
  mask->description = description;
  read_mask_parameters(scope, *parameters, *mask);
  return known = mask;
}

}  // namespace kinemo::formats::diagram
