// Blocks: placed, moved, renamed, taken away.

#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/part_block.hpp"
#include "apps/scripting/port_order.hpp"
#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/copy_block.hpp"
#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "embedded/block_diagram/placement.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace kinemo::scripting {

namespace {

/// Where a new block is to stand.
struct NewBlock {
  host::System* system;
  ustring name;
};

/// @throws "PathOfNoBlock" (path), and what `system_at` raises
NewBlock new_block_from(const Call& call, std::size_t input) {
  const ustring path = ustring_from(call, input);
  std::vector<ustring> names = host::splitPath(path);
  if (names.size() < 2 || names.back().empty()) kmf::throw_message(diagram_messages, "PathOfNoBlock", path);
  ustring system;
  for (std::size_t i = 0; i + 1 < names.size(); ++i) system += (i == 0 ? u"" : u"/") + host::escapedName(names[i]);
  return {&system_at(system), names.back()};
}

/// The path of a block inside would read as that of a block whose name begins with a slash.
void check_subsystem_name(const ustring& name) {
  if (!name.empty() && name.back() == u'/') kmf::throw_message(diagram_messages, "SubsystemName", name);
}

/// @throws "UnknownType" (type, nearest or "")
GTBlock& place_new(const std::string& type, const NewBlock& block) {
  if (type == "subsystem") {
    check_subsystem_name(block.name);
    return block.system->addSubsystem(block.name);
  }
  if (is_part(type)) {
    check_subsystem_name(block.name);
    return place_part(*block.system, block.name, type);
  }
  if (type == "port") return block.system->addPort(block.name, host::Side::Left, next_port_order(*block.system));
  if (gt_find_prototype(type) == nullptr) {
    std::vector<std::string> known = gt_prototype_names();
    known.insert(known.end(), {"subsystem", "port"});
    kmf::throw_message(diagram_messages, "UnknownType", type, host::nearestName(type, known));
  }
  return block.system->addBlock(block.name, type);
}

/// Sets the parameters of a block that was just placed, and takes it away again where they can't be set.
void finish_block(Call& call, GTBlock& block, const host::ParameterValues& parameters) {
  try {
    if (!parameters.empty()) host::setParameters(block, host::textsFor(block, parameters));
  } catch (...) {
    host::removeBlock(block);
    throw;
  }
  if (call.wanted > 0) call.give(block.getHandle());
}

void add_block(Call& call) {
  const std::string type = text_from(call, 0);
  const host::ParameterValues parameters = pairs_from(call, 2);
  finish_block(call, place_new(type, new_block_from(call, 1)), parameters);
}

/// On the block itself its copy would hide it, and among the ports of a side it stands last.
void set_apart(GTBlock& copy) {
  host::removeProperty(copy, "Position");
  if (!host::isIoPort(copy)) return;
  const int order = next_port_order(host::parentSystem(copy));
  host::setParameter(copy, "Port", kmf::utf8_string_to_ustring(std::to_string(order)));
}

void copy_block(Call& call) {
  const GTBlock& block = block_from(call, 0);
  const NewBlock target = new_block_from(call, 1);
  const host::ParameterValues parameters = pairs_from(call, 2);
  if (host::isSubsystem(block)) check_subsystem_name(target.name);
  GTBlock& copy = host::copyBlock(block, *target.system, target.name);
  if (target.system == &host::parentSystem(block)) set_apart(copy);
  finish_block(call, copy, parameters);
}

void delete_block(Call& call) {
  host::removeBlock(block_from(call, 0));
}

void rename_block(Call& call) {
  GTBlock& block = block_from(call, 0);
  const ustring name = ustring_from(call, 1);
  if (host::isSubsystem(block)) check_subsystem_name(name);
  const host::System& system = host::parentSystem(block);
  const ustring before = block.getGrName();
  block.setGrName(name);
  // A variant follows the name of its active choice.
  GTBlock* const variant = system.owner();
  if (variant == nullptr || !host::isVariant(*variant)) return;
  host::SubsystemData& data = *variant->host().subsystem();
  if (data.activeVariant == before) data.activeVariant = name;
}

/// @throws "BadPlace" ()
ustring position_from(const cvArray_tag* array) {
  std::array<double, 4> numbers{};
  bool good = cvIsNumeric(array) && !cvIsComplex(array) && cvGetNumberOfElements(array) == numbers.size();
  for (std::size_t i = 0; good && i < numbers.size(); ++i) {
    numbers[i] = cvGetElement(array, i);
    good = std::isfinite(numbers[i]) && (i < 2 || numbers[i] >= 0);
  }
  if (!good) kmf::throw_message(diagram_messages, "BadPlace");
  return kmf::utf8_string_to_ustring(
      fmt::format("[{} {} {} {}]", numbers[0], numbers[1], numbers[0] + numbers[2], numbers[1] + numbers[3]));
}

/// @throws "BadRotation" (angle)
ustring rotation_from(double angle) {
  for (const int known : {0, 90, 180, 270}) {
    if (angle == known) return kmf::utf8_string_to_ustring(std::to_string(known));
  }
  kmf::throw_message(diagram_messages, "BadRotation", fmt::format("{}", angle));
}

/// The default where a block has no property of the name.
void tell_place(Call& call, const GTBlock& block) {
  const auto edges = host::edges(block);
  cvUniquePtr where(cvCreateDoubleMatrix(edges ? 1 : 0, edges ? 4 : 0));
  if (edges) {
    const auto [left, top, right, bottom] = *edges;
    const std::array<double, 4> numbers{left, top, right - left, bottom - top};
    std::copy(numbers.begin(), numbers.end(), cvGetWritableDoubles(where.get()));
  }
  call.give(std::move(where));
  call.give(static_cast<double>(host::rotation(block)));
  call.give(host::mirrored(block));
}

void place(Call& call) {
  GTBlock& block = block_from(call, 0);
  if (call.size() == 1) return tell_place(call, block);
  const bool nowhere = cvIsNumeric(call[1]) && cvIsEmpty(call[1]);
  const ustring position = nowhere ? ustring() : position_from(call[1]);
  const ustring rotation = call.size() > 2 ? rotation_from(call.number(2)) : ustring();
  const bool mirrored = call.size() > 3 && switch_from(call, 3);
  if (nowhere) {
    host::removeProperty(block, "Position");
  } else {
    host::setProperty(block, "Position", position);
  }
  if (call.size() > 2) host::setProperty(block, "Rotation", rotation);
  if (call.size() > 3) host::setProperty(block, "Mirror", mirrored ? u"on" : u"off");
}

void ports(Call& call) {
  call.give(text_column(views::port_names(block_from(call, 0))));
}

}  // namespace

std::vector<DiagramFunction> block_functions() {
  return {
      {"add_block",
       2,
       any_number,
       add_block,
       {"add_block(type, path)\nadd_block(type, path, parameter, value, ...)\nh = add_block(...)",
        "Places a block, sets parameters of it, and gives its handle.",
        "The type is the name of a block of the library, such as 'physical/resistor', or 'subsystem', or 'port': a "
        "port of the subsystem around it, by default at the end of the left side (parameters 'Side' and 'Port'); or "
        "the path of a part's file, such as './lib/fan.yaml'. Values are those that set_param takes: texts, numbers, "
        "true and false. A wrong parameter places nothing."}},
      {"copy_block",
       2,
       any_number,
       copy_block,
       {"copy_block(from, to)\ncopy_block(from, to, parameter, value, ...)\nh = copy_block(...)",
        "Places a copy of a block, sets parameters of it, and gives its handle.",
        "Both are paths; the copy may stand in another diagram. Parameters, masks and all that lies in a subsystem are "
        "copied with their places and the lines between them, but no lines at the block's own ports. Parts stay links. "
        "A copy beside the block has no place of its own, so that it doesn't hide the block."}},
      {"delete_block",
       1,
       1,
       delete_block,
       {"delete_block(path)", "Takes a block away, with all that lies in it.",
        "Lines lose their ends at its ports, and end where they join nothing any more."}},
      {"rename_block",
       2,
       2,
       rename_block,
       {"rename_block(path, name)", "Gives a block another name.",
        "Lines stay; a variant follows the name of its active choice."}},
      {"place",
       1,
       4,
       place,
       {"place(path, [x y width height])\nplace(path, [x y width height], rotation)\n"
        "place(path, [x y width height], rotation, mirror)\n[where, rotation, mirror] = place(path)",
        "Says where a block stands in a picture of its system, or tells it.",
        "[] is no place of its own: the picture looks for one. The rotation is 0, 90, 180 or 270 degrees. With mirror "
        "'on' or true, left and right are exchanged before."}},
      {"ports",
       1,
       1,
       ports,
       {"names = ports(path)", "Names of a block's ports, as a column of texts.",
        "Their order is that of the block's kind; of a subsystem, left ports come first."}}};
}

}  // namespace kinemo::scripting
