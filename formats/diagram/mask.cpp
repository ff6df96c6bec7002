#include "formats/diagram/reading.hpp"

#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

#include <boost/make_shared.hpp>

namespace kinemo::formats::diagram {

namespace {

/// The short form `R: 2*R0`, or the long one with `value` and what the dialog shows.
bool read_mask_parameter(const Scope& scope, const YamlNode& node, GTMaskParameter& parameter) {
  if (!node.is_mapping()) {
    const auto text = expect_text(scope, node, "the mask parameter '" + parameter.name + "'");
    if (text) parameter.value = kmf::utf8_string_to_ustring(*text);
    return text.has_value();
  }
  expect_object(scope, node, ObjectKind::mask_parameter);
  const auto text_at = [&](const char* key) -> std::string {
    const YamlNode* value = node.find(key);
    return value != nullptr ? expect_text(scope, *value, "'" + std::string(key) + "'").value_or("") : std::string();
  };
  if (node.find("value") == nullptr) {
    scope.error(node, "diagram:missing-key", "the mask parameter '" + parameter.name + "' has no 'value'");
    return false;
  }
  parameter.value = kmf::utf8_string_to_ustring(text_at("value"));
  parameter.unit = text_at("unit");
  if (const std::string prompt = text_at("prompt"); !prompt.empty()) parameter.prompt = prompt;
  const std::string kind = text_at("kind");
  if (kind == "text") parameter.type = GTPrmDesc::STRING;
  if (!kind.empty() && kind != "text" && kind != "expression") {
    scope.error(*node.find("kind"), "diagram:bad-value", "a mask parameter can't be of the kind '" + kind + "'",
                "expression, text");
  }
  return true;
}

}  // namespace

boost::shared_ptr<const GTMaskDefinition> Reading::mask(const Scope& scope, const YamlNode& node) {
  const auto known = masks_.find(&node);
  if (known != masks_.end()) return known->second;
  auto mask = boost::make_shared<GTMaskDefinition>();
  if (expect_mapping(scope, node, "'mask'")) {
    for (std::size_t i = 0; i < node.entry_count(); ++i) {
      GTMaskParameter parameter;
      parameter.name = node.key(i).text;
      parameter.prompt = parameter.name;
      if (!kmf::VnId::isLegal(parameter.name)) {
        scope.error(node.key(i), "diagram:bad-value", "'" + parameter.name + "' can't be the name of a mask parameter",
                    "a letter, then letters, digits and underscores");
        continue;
      }
      if (read_mask_parameter(scope, node.value(i), parameter)) mask->parameters.push_back(std::move(parameter));
    }
  }
  return masks_[&node] = mask;
}

}  // namespace kinemo::formats::diagram
