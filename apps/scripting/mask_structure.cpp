#include "apps/scripting/mask_structure.hpp"

#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/mask_parameter.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "formats/names.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <set>

namespace kinemo::scripting {

namespace {

const std::vector<std::string>& mask_fields() {
  static const std::vector<std::string> names{"type", "description", "parameters"};
  return names;
}

const std::vector<std::string>& parameter_fields() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> all = mask_properties();
    all.insert(all.begin(), "name");
    return all;
  }();
  return names;
}

void set_text(cvArray_tag* structure, std::size_t i, const char* field, const ustring& text) {
  cvSetField(structure, i, field, cvCreateUString(text));
}

void set_text(cvArray_tag* structure, std::size_t i, const char* field, const std::string& text) {
  cvSetField(structure, i, field, cvCreateString(text));
}

void tell_parameter(cvArray_tag* structures, std::size_t i, const GTMaskParameter& parameter) {
  set_text(structures, i, "name", parameter.name);
  set_text(structures, i, "value", parameter.value);
  set_text(structures, i, "unit", parameter.unit);
  set_text(structures, i, "prompt", parameter.prompt);
  set_text(structures, i, "kind", mask_kind(parameter));
  cvSetField(structures, i, "choices", text_column(parameter.choices).release());
}

// --- back

/// @throws "UnknownMaskField" (field, nearest or "", valid fields)
void check_fields(const cvArray_tag* array, const std::vector<std::string>& known) {
  for (const std::string& field : cvGetFieldNames(array)) {
    if (std::find(known.begin(), known.end(), field) != known.end()) continue;
    kmf::throw_message(diagram_messages, "UnknownMaskField", field, host::nearestName(field, known),
                       formats::list_names(known));
  }
}

/// Null for a field that is absent or []. An empty text or cell array says something.
const cvArray_tag* told(const cvArray_tag* structure, std::size_t i, const std::string& field) {
  const cvArray_tag* value = cvGetField(structure, i, field.c_str());
  return value != nullptr && cvIsEmpty(value) && cvIsNumeric(value) ? nullptr : value;
}

std::string text_of_field(const cvArray_tag* structure, const std::string& field, const InputPlace& place) {
  const cvArray_tag* text = told(structure, 0, field);
  return text != nullptr ? kmf::ustring_to_utf8_string(text_of(text, {place.function, place.input, field}))
                         : std::string();
}

GTMaskParameter parameter_of(const cvArray_tag* structures, std::size_t i, const InputPlace& place) {
  const cvArray_tag* name = told(structures, i, "name");
  if (name == nullptr) kmf::throw_message(diagram_messages, "MaskParameterWithoutName", std::to_string(i + 1));
  const std::string name_text = kmf::ustring_to_utf8_string(text_of(name, {place.function, place.input, "name"}));
  MaskParameterEdit edit(new_mask_parameter(name_text));
  if (told(structures, i, "value") == nullptr) {
    kmf::throw_message(diagram_messages, "MaskParameterWithoutValue", name_text);
  }
  for (const std::string& property : mask_properties()) {
    if (const cvArray_tag* setting = told(structures, i, property))
      edit.set(property, setting, {place.function, place.input, property});
  }
  return edit.done();
}

}  // namespace

cvUniquePtr structures_of(const std::vector<GTMaskParameter>& parameters) {
  const std::size_t count = parameters.size();
  cvUniquePtr structures(cvCreateStructMatrix(count, count != 0 ? 1 : 0, parameter_fields()));
  for (std::size_t i = 0; i < count; ++i) tell_parameter(structures.get(), i, parameters[i]);
  return structures;
}

cvUniquePtr structure_of(const GTMaskDefinition& mask) {
  cvUniquePtr parameters = structures_of(mask.parameters);
  cvUniquePtr structure(cvCreateStructMatrix(1, 1, mask_fields()));
  set_text(structure.get(), 0, "type", mask.type);
  set_text(structure.get(), 0, "description", mask.description);
  cvSetField(structure.get(), 0, "parameters", parameters.release());
  return structure;
}

boost::shared_ptr<GTMaskDefinition> mask_of(const cvArray_tag* structure, const InputPlace& place) {
  if (!cvIsStruct(structure) || cvGetNumberOfElements(structure) != 1) {
    kmf::throw_message(diagram_messages, "NotAMask", cvGetClassName(structure));
  }
  check_fields(structure, mask_fields());
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = text_of_field(structure, "type", place);
  mask->description = text_of_field(structure, "description", place);
  const cvArray_tag* parameters = told(structure, 0, "parameters");
  if (parameters == nullptr) return mask;
  if (!cvIsStruct(parameters)) {
    kmf::throw_message(diagram_messages, "NotMaskParameters", cvGetClassName(parameters));
  }
  check_fields(parameters, parameter_fields());
  std::set<std::string> names;
  for (std::size_t i = 0; i < cvGetNumberOfElements(parameters); ++i) {
    mask->parameters.push_back(parameter_of(parameters, i, place));
    const std::string& name = mask->parameters.back().name;
    if (!names.insert(name).second) kmf::throw_message(diagram_messages, "MaskParameterTwice", name);
  }
  return mask;
}

}  // namespace kinemo::scripting
