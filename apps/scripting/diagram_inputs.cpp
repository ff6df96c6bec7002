#include "apps/scripting/diagram_inputs.hpp"

#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::scripting {

namespace {

/// Beyond as many blocks the search for a near name would take longer than the user's looking.
constexpr std::size_t most_names_to_compare = 20'000;
constexpr std::size_t shown_width = 40;  ///< of a wrong input in a message

[[noreturn]] void throw_unknown_diagram(const std::string& name) {
  std::vector<std::string> names;
  for (const host::Diagram* diagram : host::Diagram::open()) names.push_back(diagram->name());
  kmf::throw_message(diagram_messages, "UnknownDiagram", name, host::nearestName(name, names));
}

/// The first name of the path that isn't there.
[[noreturn]] void throw_unknown_block(const ustring& path) {
  const std::vector<ustring> names = host::splitPath(path);
  const std::string top = kmf::ustring_to_utf8_string(names.front());
  host::Diagram* diagram = host::Diagram::find(top);
  if (diagram == nullptr) throw_unknown_diagram(top);
  const host::DeadEnd end = host::deadEnd(diagram->root(), names, 1);
  if (end.closed != nullptr) {
    kmf::throw_message(diagram_messages, "NoInside", end.closed->getFullPath(true), host::blockType(*end.closed));
  }
  const std::string name = kmf::ustring_to_utf8_string(names.at(end.name));
  const bool few = end.system->blocks().size() <= most_names_to_compare;
  kmf::throw_message(diagram_messages, "UnknownBlock", path, end.system->path(), name,
                     few ? host::nearestName(name, block_names(*end.system)) : std::string());
}

GantrelObject& object_at(const ustring& path) {
  GantrelObject* const object = host::findByPath(path);
  if (object == nullptr) throw_unknown_block(path);
  return *object;
}

GantrelObject& object_from(const Call& call, std::size_t input) {
  const cvArray_tag* array = call[input];
  if (cvIsChar(array)) return object_at(kmf::cvarray_to_ustring(array));
  if (!cvIsNumeric(array) || cvGetNumberOfElements(array) != 1) {
    kmf::throw_message(diagram_messages, "NotAPath", std::string(call.name), std::to_string(input + 1),
                       cvGetClassName(array));
  }
  GantrelObject* const object = Handle2GantrelObject(cvGetScalar(array));
  if (object == nullptr || object->getGantrelObjectType() == host::port_object_type) {
    kmf::throw_message(diagram_messages, "UnknownHandle", embedded::scripting_runtime::number_text(cvGetScalar(array)));
  }
  return *object;
}

/// Characters on one line.
bool is_text(const cvArray_tag* array) {
  return cvIsChar(array) && (cvIsEmpty(array) || cvGetDimensions(array)[0] == 1);
}

host::System& inside_of(GantrelObject& object) {
  if (auto* diagram = dynamic_cast<GTBlockDiagram*>(&object)) return diagram->diagram().root();
  const auto& block = dynamic_cast<const GTBlock&>(object);
  if (host::System* system = host::contents(block)) return *system;
  kmf::throw_message(diagram_messages, "NoInside", block.getFullPath(true), host::blockType(block));
}

}  // namespace

host::Diagram& diagram_from(const Call& call, std::size_t input) {
  GantrelObject& object = object_from(call, input);
  if (auto* diagram = dynamic_cast<GTBlockDiagram*>(&object)) return diagram->diagram();
  kmf::throw_message(diagram_messages, "NotADiagram", dynamic_cast<const GTBlock&>(object).getFullPath(true));
}

GTBlock& block_from(const Call& call, std::size_t input) {
  GantrelObject& object = object_from(call, input);
  if (auto* block = dynamic_cast<GTBlock*>(&object)) return *block;
  kmf::throw_message(diagram_messages, "NotABlock", dynamic_cast<const GTBlockDiagram&>(object).diagram().name());
}

host::System& system_from(const Call& call, std::size_t input) {
  return inside_of(object_from(call, input));
}

host::System& system_at(const ustring& path) {
  return inside_of(object_at(path));
}

host::ParameterValues pairs_from(const Call& call, std::size_t first) {
  host::ParameterValues pairs;
  for (std::size_t i = first; i < call.size(); i += 2) {
    const std::string name = host::parameterName(call[i], call.name, i + 1);
    if (i + 1 == call.size()) kmf::throw_message(diagram_messages, "NameWithoutValue", std::string(call.name), name);
    pairs.push_back({name, call[i + 1], call.name, i + 2});
  }
  return pairs;
}

ustring text_of(const cvArray_tag* array, const InputPlace& place) {
  if (is_text(array)) return kmf::cvarray_to_ustring(array);
  kmf::throw_message(diagram_messages, "NotAText", place.function, std::to_string(place.input),
                     embedded::scripting_runtime::inline_text(array, shown_width), place.field);
}

std::vector<ustring> texts_of(const cvArray_tag* array, const InputPlace& place) {
  std::vector<ustring> texts;
  if (cvIsEmpty(array)) return texts;
  for (std::size_t i = 0; cvIsCell(array) && i < cvGetNumberOfElements(array); ++i) {
    if (is_text(cvGetCell(array, i))) texts.push_back(kmf::cvarray_to_ustring(cvGetCell(array, i)));
  }
  if (cvIsCell(array) && texts.size() == cvGetNumberOfElements(array)) return texts;
  kmf::throw_message(diagram_messages, "NotTexts", place.function, std::to_string(place.input),
                     embedded::scripting_runtime::inline_text(array, shown_width), place.field);
}

ustring ustring_from(const Call& call, std::size_t input) {
  return text_of(call[input], {call.name, input + 1});
}

std::string text_from(const Call& call, std::size_t input) {
  return kmf::ustring_to_utf8_string(ustring_from(call, input));
}

bool switch_from(const Call& call, std::size_t input) {
  const cvArray_tag* array = call[input];
  const std::string text = cvIsChar(array) ? kmf::lower(text_from(call, input)) : std::string();
  if (text == "on" || text == "off") return text == "on";
  const bool scalar = (cvIsLogical(array) || cvIsNumeric(array)) && cvGetNumberOfElements(array) == 1;
  if (!scalar || (cvGetScalar(array) != 0 && cvGetScalar(array) != 1)) {
    kmf::throw_message(diagram_messages, "NotASwitch", std::string(call.name), std::to_string(input + 1));
  }
  return cvGetScalar(array) == 1;
}

std::vector<std::string> block_names(const host::System& system) {
  std::vector<std::string> names;
  for (const GTBlock* block : system.blocks()) names.push_back(kmf::ustring_to_utf8_string(block->getGrName()));
  return names;
}

cvUniquePtr text_column(const std::vector<std::string>& texts) {
  cvUniquePtr cells(cvCreateCellMatrix(texts.size(), texts.empty() ? 0 : 1));
  for (std::size_t i = 0; i < texts.size(); ++i) cvSetCell(cells.get(), i, cvCreateString(texts[i]));
  return cells;
}

}  // namespace kinemo::scripting
