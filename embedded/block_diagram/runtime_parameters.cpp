// Run-time parameters of a model: variables of its workspace and of its dictionary that are marked so, and what their
// expressions need besides.

#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/expression_names.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace embedded::block_diagram {

namespace {

Diagram& diagramFrom(const cvArray_tag* array) {
  auto* object = dynamic_cast<GTBlockDiagram*>(&objectFrom(array));
  if (!object) kmf::throw_message("kinemo:host:parameters", "NotADiagram", kmf::cvarray_to_ustring(array));
  return object->diagram();
}

struct Resolved {
  std::vector<std::pair<std::string, cvUniquePtr>> map;
  std::vector<ustring> nonValue;
};

class Resolver {
 public:
  explicit Resolver(Diagram& diagram) : diagram_(diagram), variables_(diagram) {}

  Resolved operator()(const std::vector<std::string>& marked) {
    for (const std::string& name : marked) add(name, variables_.find(name));
    const CompanionNames more = companionNames(diagram_, variables_, {marked.begin(), marked.end()});
    for (const std::string& name : more.variables) add(name, variables_.scope().find(name));
    for (const std::string& name : more.withoutNumbers) addWithoutValue(name);
    return std::move(resolved_);
  }

 private:
  void add(const std::string& name, const cvArray_tag* variable) {
    if (!variable) kmf::throw_message("kinemo:host:parameters", "UnknownVariable", name, diagram_.name());
    cvUniquePtr value = parameterValue(variable);  // a "kinemo.Value" where there is a unit, which reaches the graph
    if (holdsRealNumbers(value.get())) {
      resolved_.map.emplace_back(name, std::move(value));
    } else {
      addWithoutValue(name);
    }
  }

  void addWithoutValue(const std::string& name) { resolved_.nonValue.push_back(kmf::utf8_string_to_ustring(name)); }

  Diagram& diagram_;
  VariableScope variables_;
  Resolved resolved_;
};

cvUniquePtr mapArray(std::vector<std::pair<std::string, cvUniquePtr>> map) {
  cvUniquePtr array(cvCreateStructMatrix(map.size(), map.empty() ? 0 : 1, {"Name", "Value"}));
  for (std::size_t i = 0; i < map.size(); ++i) {
    cvSetField(array.get(), i, "Name", cvCreateString(map[i].first));
    cvSetField(array.get(), i, "Value", map[i].second.release());
  }
  return array;
}

}  // namespace

void runtimeParameters(int, Arguments outputs, int nIn, Arguments inputs) {
  kmf::check_num_inputs(1, 1, nIn);
  Diagram& diagram = diagramFrom(inputs[0]);
  const VariableScope variables(diagram);
  std::vector<ustring> marked;
  for (const std::string& name : variables.names()) {
    if (isRuntime(variables.find(name))) marked.push_back(kmf::utf8_string_to_ustring(name));
  }
  std::sort(marked.begin(), marked.end());
  outputs[0] = kmf::string_vector_to_cvarray(marked, 1);
}

void resolveRuntimeParameters(int, Arguments outputs, int nIn, Arguments inputs) {
  kmf::check_num_inputs(2, 2, nIn);
  Diagram& diagram = diagramFrom(inputs[0]);
  Resolved resolved = Resolver(diagram)(kmf::cvarray_to_string_vector(inputs[1]));
  cvUniquePtr structure(cvCreateStructMatrix(1, 1, {"Map", "NonValue"}));
  cvSetField(structure.get(), 0, "Map", mapArray(std::move(resolved.map)).release());
  cvSetField(structure.get(), 0, "NonValue", kmf::string_vector_to_cvarray(resolved.nonValue, 1));
  outputs[0] = structure.release();
}

}  // namespace embedded::block_diagram
