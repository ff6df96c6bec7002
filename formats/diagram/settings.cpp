#include "formats/diagram/reading.hpp"

#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

namespace kinemo::formats::diagram {

namespace {

void read_parameters(Reading& reading, const Scope& scope, const YamlNode& settings) {
  if (!expect_mapping(scope, settings, "'settings'")) return;
  std::vector<std::string> known;
  for (const auto& [name, value] : reading.diagram->parameters()) known.push_back(name);
  for (std::size_t i = 0; i < settings.entry_count(); ++i) {
    const YamlNode& key = settings.key(i);
    const auto text = expect_text(scope, settings.value(i), "the setting '" + key.text + "'");
    if (!text) continue;
    // A domain may ask for settings that the host doesn't know, so only a near miss is worth a word.
    const bool standing = reading.diagram->parameters().count(key.text) != 0;
    const std::string near = standing ? std::string() : scope.report.suggest(key.text, known);
    if (!near.empty()) {
      scope.warning(key, "diagram:unknown-setting", "the host has no setting '" + key.text + "'" + near);
    }
    scope.guarded(key, [&] { reading.diagram->setParameter(key.text, kmf::utf8_string_to_ustring(*text)); });
  }
}

void read_variable(Reading& reading, const Scope& scope, const std::string& name, const YamlNode& node) {
  const YamlNode* value = &node;
  std::string unit;
  bool runtime = false;
  if (node.is_mapping()) {
    expect_object(scope, node, ObjectKind::variable);
    value = node.find("value");
    if (const YamlNode* given = node.find("unit")) unit = expect_text(scope, *given, "a unit").value_or("");
    if (const YamlNode* given = node.find("runtime"))
      runtime = expect_switch(scope, *given, "'runtime'").value_or(false);
  }
  if (value == nullptr) {
    return scope.error(node, "diagram:missing-key", "the variable '" + name + "' has no 'value'");
  }
  const auto text = expect_text(scope, *value, "the variable '" + name + "'");
  if (!text) return;
  scope.guarded(*value, [&] { reading.diagram->setVariable(name, kmf::utf8_string_to_ustring(*text), unit, runtime); });
}

void read_workspace(Reading& reading, const Scope& scope, const YamlNode& workspace) {
  if (!expect_mapping(scope, workspace, "'workspace'")) return;
  for (std::size_t i = 0; i < workspace.entry_count(); ++i) {
    const YamlNode& key = workspace.key(i);
    if (!kmf::VnId::isLegal(key.text) || key.text.empty()) {
      scope.error(key, "diagram:bad-value", "'" + key.text + "' can't be the name of a variable",
                  "a letter, then letters, digits and underscores");
      continue;
    }
    read_variable(reading, scope, key.text, workspace.value(i));
  }
}

}  // namespace

void read_settings(Reading& reading, const Scope& scope, const YamlNode& model) {
  if (const YamlNode* settings = model.find("settings")) read_parameters(reading, scope, *settings);
  if (const YamlNode* workspace = model.find("workspace")) read_workspace(reading, scope, *workspace);
  const YamlNode* dictionary = model.find("dictionary");
  if (dictionary == nullptr) return;
  const auto name = expect_text(scope, *dictionary, "'dictionary'");
  if (!name) return;
  scope.guarded(*dictionary,
                [&] { reading.diagram->setParameter("DataDictionary", kmf::utf8_string_to_ustring(*name)); });
}

}  // namespace kinemo::formats::diagram
