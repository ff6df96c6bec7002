#include "formats/diagram/reading.hpp"
#include "formats/diagram/variables.hpp"
#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"

#include <filesystem>

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
    scope.guarded(key, [&] {
      reading.diagram->setParameter(key.text, kmf::utf8_string_to_ustring(*text), scope.host_place(settings.value(i)));
    });
  }
}

/// The path as the model's own file would be given, so that "Gantrel.dd.open" finds the file by it.
std::string shown_path(const Scope& scope, const std::string& path) {
  return (std::filesystem::path(*scope.file.name).parent_path() / path).lexically_normal().string();
}

void read_linked_dictionary(Reading& reading, const Scope& scope, const YamlNode& node) {
  const auto path = expect_text(scope, node, "'dictionary'");
  if (!path || path->empty()) return;
  std::string reason;
  const ModelFile* file = reading.files.open(scope.file, *path, reason);
  if (file == nullptr) {
    return scope.error(node, "diagram:unreadable", "the data dictionary '" + *path + "' can't be read: " + reason);
  }
  const auto variables = read_dictionary(reading.report, *file);
  if (!variables) return;
  const std::string shown = shown_path(scope, *path);
  host::keepDictionary(shown, variables);
  reading.diagram->setParameter("DataDictionary", kmf::utf8_string_to_ustring(shown));
}

}  // namespace

void read_settings(Reading& reading, const Scope& scope, const YamlNode& model) {
  if (const YamlNode* settings = model.find("settings")) read_parameters(reading, scope, *settings);
  if (const YamlNode* dictionary = model.find("dictionary")) read_linked_dictionary(reading, scope, *dictionary);
  const YamlNode* workspace = model.find("workspace");
  if (workspace == nullptr) return;
  read_variables(scope, *workspace, "'workspace'",
                 [&](const std::string& name, const ustring& value, const std::string& unit, bool runtime) {
                   reading.diagram->setVariable(name, value, unit, runtime);
                 });
}

}  // namespace kinemo::formats::diagram
