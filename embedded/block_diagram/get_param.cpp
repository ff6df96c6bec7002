// "get_param" and "set_param": which objects are meant, and one answer for one of them.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/handles.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/parameter_values.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace embedded::block_diagram {

namespace {

std::string handleText(double handle) {
  char text[32];
  std::snprintf(text, sizeof text, "%.17g", handle);
  return text;
}

[[noreturn]] void throwNotAnObject(const cvArray_tag* array) {
  kmf::throw_message("kinemo:host:parameters", "NotAnObject", cvGetClassName(array));
}

/// Calls `visit(object)` for each object that the array names; it is a vector of handles or a cell array of paths.
template <class Visit>
void forEachObject(const cvArray_tag* array, Visit visit) {
  const std::size_t count = cvGetNumberOfElements(array);
  if (!cvIsCell(array) && !cvIsNumeric(array)) throwNotAnObject(array);
  for (std::size_t i = 0; i < count; ++i)
    visit(i, cvIsCell(array) ? objectFrom(cvGetCell(array, i)) : objectFrom(cvGetElement(array, i)));
}

bool isOneObject(const cvArray_tag* array) {
  return cvIsChar(array) || (cvIsNumeric(array) && cvGetNumberOfElements(array) == 1);
}

/// Pairs of name and value behind the object. @throws "NameWithoutValue", "NotAName"
ParameterValues valuesFrom(int nIn, Arguments inputs) {
  if (nIn % 2 == 0) kmf::throw_message("kinemo:host:parameters", "NameWithoutValue");
  ParameterValues values;
  for (std::size_t i = 1; i + 1 < static_cast<std::size_t>(nIn); i += 2) {
    values.push_back({parameterName(inputs[i], "set_param", i + 1), inputs[i + 1], "set_param", i + 2});
  }
  return values;
}

/// The texts that the object is to have, once it is known that it takes them.
ParameterTexts checkedTexts(const GantrelObject& object, const ParameterValues& values) {
  if (const auto* diagram = dynamic_cast<const GTBlockDiagram*>(&object)) {
    for (const ParameterValue& value : values) checkSettingName(diagram->diagram(), value.name);
    return textsForSettings(values);
  }
  const auto& block = dynamic_cast<const GTBlock&>(object);
  ParameterTexts texts = textsFor(block, values);
  checkParameters(block, texts);
  return texts;
}

bool isBlock(const GantrelObject& object) {
  return object.getGantrelObjectType() == block_object_type;
}

void set(GantrelObject& object, const ParameterTexts& texts) {
  if (auto* diagram = dynamic_cast<GTBlockDiagram*>(&object)) {
    for (const auto& [name, text] : texts) diagram->diagram().setParameter(name, text);
  } else {
    setParameters(dynamic_cast<GTBlock&>(object), texts);
  }
}

struct Edit {
  GantrelObject* object;
  ParameterTexts texts;
};

/// The blocks that were set are as before when a later one refuses.
void setEach(const std::vector<Edit>& edits) {
  std::vector<std::pair<GTBlock*, ParameterTexts>> before;
  try {
    for (const auto& [object, texts] : edits) {
      ParameterTexts old;
      if (isBlock(*object)) old = textsNow(dynamic_cast<GTBlock&>(*object), texts);
      set(*object, texts);
      if (isBlock(*object)) before.emplace_back(dynamic_cast<GTBlock*>(object), std::move(old));
    }
  } catch (...) {
    for (auto entry = before.rbegin(); entry != before.rend(); ++entry) setParameters(*entry->first, entry->second);
    throw;
  }
}

}  // namespace

GantrelObject& objectFrom(double handle) {
  GantrelObject* object = Handle2GantrelObject(handle);
  if (!object && wasMinted(handle)) kmf::throw_message("kinemo:host:parameters", "ObjectGone", handleText(handle));
  if (!object || object->getGantrelObjectType() == port_object_type)
    kmf::throw_message("kinemo:host:parameters", "UnknownObject", handleText(handle));
  return *object;
}

GantrelObject& objectFrom(const ustring& path) {
  GantrelObject* object = findByPath(path);
  if (!object) kmf::throw_message("kinemo:host:parameters", "UnknownObject", path);
  return *object;
}

GantrelObject& objectFrom(const cvArray_tag* array) {
  if (cvIsChar(array)) return objectFrom(kmf::cvarray_to_ustring(array));
  if (!cvIsNumeric(array) || cvGetNumberOfElements(array) != 1) throwNotAnObject(array);
  return objectFrom(cvGetScalar(array));
}

void getParam(int, Arguments outputs, int nIn, Arguments inputs) {
  kmf::check_num_inputs(2, 2, nIn);
  const std::string name = parameterName(inputs[1], "get_param", 2);
  if (isOneObject(inputs[0])) {
    outputs[0] = parameterValue(objectFrom(inputs[0]), name).release();
    return;
  }
  cvUniquePtr cells(cvCreateCellMatrix(cvGetNumberOfElements(inputs[0]), 1));
  forEachObject(inputs[0], [&](std::size_t i, GantrelObject& object) {
    cvSetCell(cells.get(), i, parameterValue(object, name).release());
  });
  outputs[0] = cells.release();
}

void setParam(int, Arguments, int nIn, Arguments inputs) {
  kmf::check_num_inputs(3, 1 << 20, nIn);
  scripting_runtime::refuse_in_model_evaluation("set_param");
  const ParameterValues values = valuesFrom(nIn, inputs);
  // A wrong name or word in the list, or for one of the objects, keeps all of them as they are.
  std::vector<Edit> edits;
  if (isOneObject(inputs[0])) {
    GantrelObject& object = objectFrom(inputs[0]);
    edits.push_back({&object, checkedTexts(object, values)});
  } else {
    forEachObject(inputs[0], [&](std::size_t, GantrelObject& object) {
      edits.push_back({&object, checkedTexts(object, values)});
    });
  }
  // Diagrams come last: once the names are known to be right, nothing can fail with them.
  std::stable_partition(edits.begin(), edits.end(), [](const Edit& edit) { return isBlock(*edit.object); });
  setEach(edits);
}

}  // namespace embedded::block_diagram
