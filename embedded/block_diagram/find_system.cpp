// "find_system" in the one form that callers use: the active children of one system of one block type.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>

namespace embedded::block_diagram {

namespace {

/// An option and the one value that is understood; null for the block type, which is free.
struct Option {
  const char* name;
  const char* value;
};

constexpr Option options[] = {
    {"SearchDepth", "1"},
    {"Variants", "ActiveVariants"},
    {"LookUnderMasks", "All"},
    {"FollowLinks", "on"},
    {"LookUnderReadProtectedSubsystems", "on"},
    {"BlockType", nullptr},
};
constexpr int argument_count = 1 + 2 * static_cast<int>(std::size(options));

std::string optionText(const cvArray_tag* array) {
  if (cvIsChar(array)) return kmf::cvarray_to_string(array);
  const bool isNumber = cvIsNumeric(array) && cvGetNumberOfElements(array) == 1;
  return isNumber && cvGetScalar(array) == 1.0 ? "1" : "(" + cvGetClassName(array) + ")";
}

void checkOption(const Option& option, const cvArray_tag* name, const cvArray_tag* value) {
  const std::string given = optionText(name);
  if (kmf::lower(given) != kmf::lower(option.name))
    kmf::throw_message("kinemo:host:find_system", "UnexpectedOption", given, option.name);
  const std::string text = optionText(value);
  if (option.value && kmf::lower(text) != kmf::lower(option.value))
    kmf::throw_message("kinemo:host:find_system", "UnsupportedValue", option.name, text, option.value);
}

/// The text behind "BlockType". Throws for anything but the arguments that are understood.
std::string blockTypeFrom(int nIn, Arguments inputs) {
  if (nIn != argument_count) {
    kmf::throw_message("kinemo:host:find_system", "WrongArguments", std::to_string(nIn),
                       std::to_string(argument_count));
  }
  for (std::size_t i = 0; i < std::size(options); ++i) checkOption(options[i], inputs[1 + 2 * i], inputs[2 + 2 * i]);
  return kmf::cvarray_to_string(inputs[argument_count - 1]);
}

const System& systemOf(GantrelObject& object) {
  if (const auto* diagram = dynamic_cast<const GTBlockDiagram*>(&object)) return diagram->diagram().root();
  const auto& block = dynamic_cast<const GTBlock&>(object);
  const System* system = contents(block);
  if (!system) kmf::throw_message("kinemo:host:find_system", "NotASystem", block.getFullPath(true), blockType(block));
  return *system;
}

/// A search that would end without the choice that everything else relies on ends here.
void checkChoice(const System& system) {
  const GTBlock* owner = system.owner();
  if (!owner || !isVariant(*owner) || activeChoice(*owner)) return;
  throwNoActiveChoice(*owner);
}

}  // namespace

void throwNoActiveChoice(const GTBlock& variant) {
  std::vector<std::string> choices;
  for (const GTBlock* choice : contents(variant)->subsystems())
    choices.push_back(kmf::ustring_to_utf8_string(choice->getGrName()));
  const std::string active = kmf::ustring_to_utf8_string(parameter(variant, "ActiveVariant"));
  kmf::throw_message("kinemo:host:diagram", "NoActiveChoice", variant.getFullPath(true), active,
                     nearestName(active, choices));
}

void findSystem(int, Arguments outputs, int nIn, Arguments inputs) {
  const std::string type = blockTypeFrom(nIn, inputs);
  GantrelObject& root = objectFrom(inputs[0]);
  const System& system = systemOf(root);
  checkChoice(system);
  std::vector<double> handles;
  if (system.owner() && blockType(*system.owner()) == type) handles.push_back(root.getHandle());
  for (const GTBlock* block : activeBlocks(system)) {
    if (blockType(*block) == type) handles.push_back(block->getHandle());
  }
  cvUniquePtr found(cvCreateDoubleMatrix(handles.size(), handles.empty() ? 0 : 1));
  if (!handles.empty()) std::copy(handles.begin(), handles.end(), cvGetWritableDoubles(found.get()));
  outputs[0] = found.release();
}

}  // namespace embedded::block_diagram
