// What "get_param" tells of a block or a diagram: a table of small functions, then parameters by name.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/reflected_object.hpp"
#include "platform/foundation/exception.hpp"

#include <string_view>
#include <unordered_map>

namespace embedded::block_diagram {

namespace {

cvUniquePtr text(const ustring& value) {
  return cvUniquePtr(cvCreateUString(value));
}
cvUniquePtr number(double value) {
  return cvUniquePtr(cvCreateDoubleScalar(value));
}

/// A structure with a field for each parameter, as "ObjectParameters" tells them.
cvUniquePtr nameStructure(const std::vector<std::string>& names) {
  cvUniquePtr structure(cvCreateStructMatrix(1, 1, names));
  for (const std::string& name : names) cvSetField(structure.get(), 0, name.c_str(), cvCreateString(""));
  return structure;
}

using BlockFunction = cvUniquePtr (*)(const GTBlock&);
using DiagramFunction = cvUniquePtr (*)(const Diagram&);

const std::unordered_map<std::string_view, BlockFunction>& blockTable() {
  static const std::unordered_map<std::string_view, BlockFunction> table = {
      {"Handle", [](const GTBlock& block) { return number(block.getHandle()); }},
      {"Name", [](const GTBlock& block) { return text(block.getGrName()); }},
      {"Parent",
       [](const GTBlock& block) { return text(block.host().system ? block.host().system->path() : ustring()); }},
      {"BlockType", [](const GTBlock& block) { return cvUniquePtr(cvCreateString(blockType(block))); }},
      {"Object", [](const GTBlock& block) { return reflectedObject(block); }},
      {"PortHandles", portHandles},
      {"PortConnectivity", portConnectivity},
      {"MaskWSVariables", maskWorkspace},
      {"ObjectParameters", [](const GTBlock& block) { return nameStructure(parameterNames(block)); }},
  };
  return table;
}

const std::unordered_map<std::string_view, DiagramFunction>& diagramTable() {
  static const std::unordered_map<std::string_view, DiagramFunction> table = {
      {"Handle", [](const Diagram& diagram) { return number(diagram.handle()); }},
      {"Name", [](const Diagram& diagram) { return cvUniquePtr(cvCreateString(diagram.name())); }},
      {"Parent", [](const Diagram&) { return text({}); }},
      {"Object", [](const Diagram& diagram) { return reflectedObject(*diagramObject(diagram)); }},
      {"ModelWorkspace", [](const Diagram& diagram) { return modelWorkspaceObject(*diagramObject(diagram)); }},
      {"MaskWSVariables",
       [](const Diagram&) {
         return cvUniquePtr(cvCreateStructMatrix(0, 0, {"Name", "Value"}));
       }},
      {"ObjectParameters",
       [](const Diagram& diagram) {
         std::vector<std::string> names;
         for (const auto& entry : diagram.parameters()) names.push_back(entry.first);
         return nameStructure(names);
       }},
  };
  return table;
}

template <class Table>
void addNames(std::vector<std::string>& names, const Table& table) {
  for (const auto& entry : table) names.emplace_back(entry.first);
}

[[noreturn]] void throwUnknown(const ustring& object, const std::string& name, const std::vector<std::string>& known) {
  kmf::throw_message("kinemo:host:parameters", "UnknownParameter", object, name, nearestName(name, known));
}

/// The mask's first: the user may have named a parameter as he liked.
cvUniquePtr blockParameterText(const GTBlock& block, const std::string& name) {
  const GTBlockHostData& data = block.host();
  const int inMask = data.mask ? data.mask->kind->find(name) : -1;
  if (inMask >= 0) return text(data.mask->text(static_cast<std::size_t>(inMask)).text());
  const int inDialog = data.dialog.find(name);
  if (inDialog >= 0) return cvUniquePtr(cvCreateString(dialogText(block, inDialog)));
  ustring value;
  if (hostParameter(block, name, value)) return text(value);
  if (properties(block).count(name) != 0 && canBeComponentProperty(block, name, false)) {
    return text(componentProperty(block, name));
  }
  return nullptr;
}

cvUniquePtr blockParameter(const GTBlock& block, const std::string& name) {
  const auto found = blockTable().find(name);
  if (found != blockTable().end()) return found->second(block);
  if (cvUniquePtr value = blockParameterText(block, name)) return value;
  std::vector<std::string> known = parameterNames(block);
  addNames(known, blockTable());
  throwUnknown(block.getFullPath(true), name, known);
}

cvUniquePtr diagramParameter(const Diagram& diagram, const std::string& name) {
  const auto found = diagramTable().find(name);
  if (found != diagramTable().end()) return found->second(diagram);
  const auto setting = diagram.parameters().find(name);
  if (setting != diagram.parameters().end()) return text(setting->second);
  std::vector<std::string> known;
  addNames(known, diagram.parameters());
  addNames(known, diagramTable());
  throwUnknown(diagram.root().path(), name, known);
}

}  // namespace

cvUniquePtr parameterValue(GantrelObject& object, const std::string& name) {
  if (const auto* diagram = dynamic_cast<const GTBlockDiagram*>(&object))
    return diagramParameter(diagram->diagram(), name);
  return blockParameter(dynamic_cast<const GTBlock&>(object), name);
}

cvUniquePtr maskWorkspace(const GTBlock& block) {
  const GTMask* mask = block.host().mask.get();
  std::vector<std::size_t> held;
  for (std::size_t i = 0; mask && i < mask->values.size(); ++i) {
    if (mask->values[i]) held.push_back(i);
  }
  const std::size_t count = held.size();
  cvUniquePtr variables(cvCreateStructMatrix(count, count ? 1 : 0, {"Name", "Value"}));
  for (std::size_t i = 0; i < count; ++i) {
    cvSetField(variables.get(), i, "Name", cvCreateString(mask->kind->parameters()[held[i]].name));
    cvSetField(variables.get(), i, "Value", cvCreateSharedCopy(mask->values[held[i]].get()));
  }
  return variables;
}

}  // namespace embedded::block_diagram
