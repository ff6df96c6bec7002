#include "embedded/block_diagram/data_dictionary.hpp"

#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <filesystem>
#include <map>

namespace embedded::block_diagram {

namespace {

const char* const dictionary_class = "Gantrel.dd.Dictionary";

struct OpenDictionary {
  std::filesystem::file_time_type changed;
  DictionaryVariables variables;
};

/// By canonical path. Never destroyed, as readers come from modules that may end later.
struct Dictionaries {
  DictionaryReader reader;
  std::map<std::filesystem::path, OpenDictionary> open;
};

Dictionaries& dictionaries() {
  static auto* const instance = new Dictionaries;
  return *instance;
}

std::filesystem::path canonical(const std::string& file) {
  std::error_code ignored;
  std::filesystem::path path = std::filesystem::weakly_canonical(file, ignored);
  return ignored ? std::filesystem::path(file) : path;
}

/// The earliest time there is, where the system tells none.
std::filesystem::file_time_type lastChange(const std::filesystem::path& path) {
  std::error_code ignored;
  const auto time = std::filesystem::last_write_time(path, ignored);
  return ignored ? std::filesystem::file_time_type::min() : time;
}

std::vector<const scripting_runtime::Workspace*> workspacesOf(Diagram& diagram, const DictionaryVariables& dictionary) {
  std::vector<const scripting_runtime::Workspace*> workspaces{&diagram.workspace()};
  if (dictionary) workspaces.push_back(dictionary.get());
  workspaces.push_back(&scripting_runtime::base_workspace());
  return workspaces;
}

}  // namespace

void setDictionaryReader(DictionaryReader reader) {
  dictionaries().reader = std::move(reader);
}

DictionaryVariables openDictionary(const std::string& file) {
  const std::filesystem::path path = canonical(file);
  const auto changed = lastChange(path);
  const auto known = dictionaries().open.find(path);
  if (known != dictionaries().open.end() && known->second.changed == changed) return known->second.variables;
  if (!dictionaries().reader) kmf::throw_message("kinemo:host:dictionary", "NoReader", file);
  DictionaryVariables variables = dictionaries().reader(file);
  dictionaries().open[path] = {changed, variables};
  return variables;
}

void keepDictionary(const std::string& file, DictionaryVariables variables) {
  const std::filesystem::path path = canonical(file);
  dictionaries().open[path] = {lastChange(path), std::move(variables)};
}

void closeDictionaries() {
  dictionaries().open.clear();
}

DictionaryVariables dictionaryOf(const Diagram& diagram) {
  const ustring& file = diagram.parameters().at("DataDictionary");
  return file.empty() ? nullptr : openDictionary(kmf::ustring_to_utf8_string(file));
}

cvUniquePtr makeVariable(const ustring& expression, const scripting_runtime::Scope& scope, const std::string& unit,
                         bool runtime) {
  cvUniquePtr value = scripting_runtime::evaluate(kmf::ustring_to_utf8_string(expression), scope);
  return unit.empty() && !runtime ? std::move(value) : parameterObject(std::move(value), unit, runtime);
}

VariableScope::VariableScope(Diagram& diagram)
    : workspace_(&diagram.workspace()),
      dictionary_(dictionaryOf(diagram)),
      scope_(workspacesOf(diagram, dictionary_)) {}

const cvArray_tag* VariableScope::find(const std::string& name) const {
  if (const cvArray_tag* own = workspace_->get(name)) return own;
  return dictionary_ ? dictionary_->get(name) : nullptr;
}

std::vector<std::string> VariableScope::names() const {
  std::vector<std::string> names = workspace_->names();
  if (!dictionary_) return names;
  for (std::string& name : dictionary_->names()) {
    if (!workspace_->has(name)) names.push_back(std::move(name));
  }
  return names;
}

void openDictionaryObject(int, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
  kmf::check_num_inputs(1, 1, nIn);
  outputs[0] = cvCreateNativeObject(dictionary_class, openDictionary(kmf::cvarray_to_string(inputs[0])));
}

void registerDictionaryClass() {
  scripting_runtime::register_scope_class(dictionary_class);
}

}  // namespace embedded::block_diagram
