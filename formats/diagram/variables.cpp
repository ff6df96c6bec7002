#include "formats/diagram/variables.hpp"

#include "formats/read_text.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

namespace kinemo::formats::diagram {

namespace {

void read_variable(const Scope& scope, const std::string& name, const YamlNode& node, const DefineVariable& define) {
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
  scope.guarded(*value, [&] { define(name, kmf::utf8_string_to_ustring(*text), unit, runtime); });
}

/// The file of a dictionary by itself, for scripts and for files that have changed since a model was read.
host::DictionaryVariables read_dictionary_file(const std::string& file) {
  DiagnosticList problems;
  Report report(problems);
  LinkedFiles files(problems);
  std::string reason;
  const auto text = read_text(file, reason);
  if (!text) kmf::throw_message("kinemo:host:dictionary", "InvalidDictionary", file, reason);
  if (const auto variables = read_dictionary(report, files.add(file, file, *text))) return variables;
  std::string faults;
  for (const Diagnostic& problem : problems.all()) faults += "\n" + to_string(problem);
  kmf::throw_message("kinemo:host:dictionary", "InvalidDictionary", file, faults);
}

}  // namespace

bool is_variable_name(const std::string& name) {
  return !name.empty() && name != "end" && kmf::VnId::isLegal(name);
}

void read_variables(const Scope& scope, const YamlNode& variables, const std::string& what,
                    const DefineVariable& define) {
  if (!expect_mapping(scope, variables, what)) return;
  for (std::size_t i = 0; i < variables.entry_count(); ++i) {
    const YamlNode& key = variables.key(i);
    if (!is_variable_name(key.text)) {
      scope.error(key, "diagram:bad-value", "'" + key.text + "' can't be the name of a variable",
                  "a letter, then letters, digits and underscores; 'end' means something else");
      continue;
    }
    read_variable(scope, key.text, variables.value(i), define);
  }
}

host::DictionaryVariables read_dictionary(Report& report, const ModelFile& file) {
  const YamlNode* root = file.tree.root();
  if (root == nullptr) return nullptr;
  const Scope scope{report, file, nullptr, nullptr};
  const std::size_t errors_before = report.list().error_count();
  if (expect_object(scope, *root, ObjectKind::dictionary)) check_version(scope, *root);
  const auto variables = std::make_shared<embedded::scripting_runtime::Workspace>();
  if (const YamlNode* listed = root->find("variables")) {
    const embedded::scripting_runtime::Scope names(*variables);
    read_variables(scope, *listed, "'variables'",
                   [&](const std::string& name, const ustring& value, const std::string& unit, bool runtime) {
                     variables->set(name, host::makeVariable(value, names, unit, runtime));
                   });
  }
  return report.list().error_count() == errors_before ? variables : nullptr;
}

void install_dictionary_reader() {
  host::setDictionaryReader(read_dictionary_file);
}

}  // namespace kinemo::formats::diagram
