#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "formats/diagram/relative_path.hpp"
#include "formats/diagram/value_text.hpp"
#include "formats/diagram/variables.hpp"
#include "formats/diagram/writing.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::diagram {

namespace {

namespace sr = embedded::scripting_runtime;

constexpr const char* dictionary_setting = "DataDictionary";

/// What a diagram has before anyone says anything.
bool is_standing(const std::string& name, const ustring& text) {
  return name == "InitializeInteractiveRuns" && text == u"off";
}

/// Null as well where it can't be opened: the link is what is written.
host::DictionaryVariables dictionary_of(const host::Diagram& diagram) {
  try {
    return host::dictionaryOf(diagram);
  } catch (const kmf::Exception&) {
    return nullptr;
  }
}

/// Writes the variables of a workspace.
class VariableWriter {
 public:
  VariableWriter(Writing& writing, host::Diagram& diagram)
      : writing_(writing), workspace_(diagram.workspace()), dictionary_(dictionary_of(diagram)) {}

  void write(std::size_t indent, const std::string& name) {
    if (!is_variable_name(name)) return refuse(name, "a file can't give a variable that name");
    const cvArray_tag* array = workspace_.get(name);
    if (!host::isParameterObject(array)) {
      writing_.entry(indent, yaml_name(name), value(name, array));
    } else {
      writing_.entry(indent, yaml_name(name), yaml_mapping(parameter(name, array)));
    }
  }

 private:
  void refuse(const std::string& name, const std::string& reason) {
    writing_.refuse(nullptr, "the variable '" + name + "' can't be written: " + reason);
  }

  /// A parameter object is a value with its unit, and its mark.
  YamlEntries parameter(const std::string& name, const cvArray_tag* array) {
    const sr::Quantity quantity = sr::quantity_of(array);
    YamlEntries entries{{"value", value(name, quantity.numbers.array())}};
    if (quantity.has_unit()) entries.emplace_back("unit", yaml_name(sr::unit_text(quantity.unit)));
    if (host::isRuntime(array)) entries.emplace_back("runtime", "on");
    if (entries.size() == 1) refuse(name, "it is a parameter object without a unit and without the run-time mark");
    return entries;
  }

  std::string value(const std::string& name, const cvArray_tag* array) {
    std::string reason;
    const auto told = value_text(array, reason);
    if (!told) {
      refuse(name, "it holds " + reason);
      return "[]";
    }
    for (const std::string& function : told->functions) {
      const std::string first = function.substr(0, function.find('.'));
      if (!workspace_.has(first) && (dictionary_ == nullptr || !dictionary_->has(first))) continue;
      refuse(name, "its value is told by the function '" + function + "', which a variable of that name hides");
    }
    return writing_.value(nullptr, told->text);
  }

  Writing& writing_;
  const sr::Workspace& workspace_;
  host::DictionaryVariables dictionary_;
};

void write_workspace(Writing& writing, host::Diagram& diagram) {
  const std::vector<std::string> names = diagram.workspace().names();
  if (names.empty()) return;
  VariableWriter variables(writing, diagram);
  writing.open(0, "workspace");
  for (const std::string& name : names) variables.write(2, name);
}

}  // namespace

void write_settings(Writing& writing, host::Diagram& diagram, const std::string& file) {
  YamlEntries settings;
  for (const auto& [name, text] : diagram.parameters()) {
    if (name == dictionary_setting || is_standing(name, text)) continue;
    settings.emplace_back(yaml_name(name), writing.value(nullptr, text));
  }
  writing.mapping(0, "settings", settings);
  const ustring& dictionary = diagram.parameters().at(dictionary_setting);
  if (!dictionary.empty()) {
    writing.entry(0, "dictionary", yaml_name(relative_path(kmf::ustring_to_utf8_string(dictionary), file)));
  }
  write_workspace(writing, diagram);
}

}  // namespace kinemo::formats::diagram
