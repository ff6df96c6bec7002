#include "apps/kinemo/definitions.hpp"

#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "formats/diagram/variables.hpp"
#include "formats/names.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::app {

namespace {

namespace host = embedded::block_diagram;

struct Definition {
  std::string name;
  std::string value;
};

Definition split(const std::string& definition) {
  const std::size_t equals = definition.find('=');
  if (equals == std::string::npos) return {definition, {}};
  return {definition.substr(0, equals), definition.substr(equals + 1)};
}

void define(const Definition& definition, host::Diagram& diagram, const formats::SourcePlace& place,
            formats::DiagnosticList& list) {
  const host::VariableScope variables(diagram);
  const cvArray_tag* known = variables.find(definition.name);
  if (known == nullptr) {
    const std::string near = formats::did_you_mean(definition.name, variables.scope().names());
    if (!near.empty()) {
      list.warning("kinemo:new-variable", place, "the model has no variable '" + definition.name + "'" + near);
    }
  }
  diagram.setVariable(definition.name, kmf::utf8_string_to_ustring(definition.value),
                      known == nullptr ? std::string() : host::unitOf(known),
                      known != nullptr && host::isRuntime(known));
}

}  // namespace

std::string definition_fault(const std::string& definition) {
  const auto [name, value] = split(definition);
  if (!formats::diagram::is_variable_name(name)) {
    return "'" + name +
           "' can't be the name of a variable; a name is a letter, then letters, digits and underscores, and not 'end'";
  }
  return value.empty() ? "'" + definition + "' gives no value; write NAME=VALUE" : std::string();
}

void define_variables(const std::vector<std::string>& definitions, host::Diagram& diagram,
                      formats::DiagnosticList& list) {
  for (const std::string& definition : definitions) {
    const formats::SourcePlace place{"-D " + definition, 0, 0};
    try {
      define(split(definition), diagram, place, list);
    } catch (const kmf::Exception& raised) {
      const kmf::ErrorData data = raised.data();
      formats::Diagnostic& error = list.error(data.group + ":" + data.id, place, data.text);
      for (const kmf::ErrorData& cause : data.causes) error.notes.push_back({cause.text, {}});
    }
  }
}

}  // namespace kinemo::app
